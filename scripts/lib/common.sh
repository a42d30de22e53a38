# Shared by the scripts: sourced, never run.

# The GNU triplet of a Debian architecture the panel software is built for.
triplet_of() {
  case "$1" in
    amd64) echo x86_64-linux-gnu ;;
    arm64) echo aarch64-linux-gnu ;;
    armhf) echo arm-linux-gnueabihf ;;
    *) echo "$(basename "$0"): unknown architecture '$1' (amd64, arm64 or armhf)" >&2; return 2 ;;
  esac
}

# Installs those of the given Debian packages that are missing.
install_missing() {
  local p missing=() sudo=""
  for p in "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  echo "installing: ${missing[*]}"
  # A broken index of one archive must not stop the install of the others.
  $sudo apt-get update -qq || echo "$(basename "$0"): some package indexes failed; going on with the rest" >&2
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# CMake arguments that put ccache in front of the compilers, when it is there.
compiler_launcher() {
  if command -v ccache >/dev/null; then
    echo "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache"
  fi
}
