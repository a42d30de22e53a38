# Shared part of the ARM panel toolchains; the per-architecture files set
# PANEL_TRIPLET and PANEL_PROCESSOR and include this one.
#
# Compilers: Debian's crossbuild-essential-<arch>. Target libraries: Debian's
# packages of the target architecture, either unpacked into a sysroot
# (SETTINGS_SYSROOT, or the environment variable of the same name, as
# scripts/make-sysroot makes it) or installed on the build machine through
# dpkg multiarch (no sysroot given).

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${PANEL_PROCESSOR})
set(CMAKE_LIBRARY_ARCHITECTURE ${PANEL_TRIPLET})

set(CMAKE_C_COMPILER ${PANEL_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${PANEL_TRIPLET}-g++)

if(NOT SETTINGS_SYSROOT AND DEFINED ENV{SETTINGS_SYSROOT})
  set(SETTINGS_SYSROOT "$ENV{SETTINGS_SYSROOT}")
endif()
# try_compile projects see only what is listed here.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES SETTINGS_SYSROOT)

if(SETTINGS_SYSROOT)
  set(CMAKE_SYSROOT "${SETTINGS_SYSROOT}")
  set(CMAKE_FIND_ROOT_PATH "${SETTINGS_SYSROOT}")
  # The target's libraries pull in their own dependencies by soname.
  set(_panel_libdirs "${SETTINGS_SYSROOT}/usr/lib/${PANEL_TRIPLET}:${SETTINGS_SYSROOT}/lib/${PANEL_TRIPLET}")
  string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT " -Wl,-rpath-link,${_panel_libdirs}")
  string(APPEND CMAKE_SHARED_LINKER_FLAGS_INIT " -Wl,-rpath-link,${_panel_libdirs}")
  string(APPEND CMAKE_MODULE_LINKER_FLAGS_INIT " -Wl,-rpath-link,${_panel_libdirs}")
  set(_panel_emulator_root "${SETTINGS_SYSROOT}")
  set(ENV{PKG_CONFIG_SYSROOT_DIR} "${SETTINGS_SYSROOT}")
else()
  set(CMAKE_FIND_ROOT_PATH /usr/${PANEL_TRIPLET})
  set(_panel_emulator_root "/usr/${PANEL_TRIPLET}")
  set(ENV{PKG_CONFIG_SYSROOT_DIR} "")
endif()
# pkg-config must describe the target's libraries, never the build machine's.
set(ENV{PKG_CONFIG_PATH} "")
set(ENV{PKG_CONFIG_LIBDIR}
  "${SETTINGS_SYSROOT}/usr/lib/${PANEL_TRIPLET}/pkgconfig:${SETTINGS_SYSROOT}/usr/share/pkgconfig")

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# Qt's translation tools are the build machine's (lrelease runs here); the
# target's package of them would only add a large, unused dependency tree.
if(NOT Qt5LinguistTools_DIR AND EXISTS /usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/cmake/Qt5LinguistTools)
  set(Qt5LinguistTools_DIR /usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/cmake/Qt5LinguistTools
    CACHE PATH "The build machine's Qt linguist tools")
endif()

# Tests and other target programs run under qemu-user with the target's
# libraries.
find_program(_panel_qemu NAMES qemu-${PANEL_QEMU}-static qemu-${PANEL_QEMU})
if(_panel_qemu)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${_panel_qemu};-L;${_panel_emulator_root}")
endif()
