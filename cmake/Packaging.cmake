# Debian packages of the plug-in, made with `cpack -G DEB` (scripts/package
# configures, builds, packs and checks them):
#   tavro-settings-plugin      the plug-in, at /usr/<libdir>/hmi/plugins
#   tavro-settings-plugin-dev  settingsinterface.h and the CMake package
#                              TavroSettings for host projects
# Dependencies are written out rather than computed by dpkg-shlibdeps, which
# needs the target's libraries in the build machine's dpkg database and so
# fails for the ARM packages.

include(CMakePackageConfigHelpers)

set(SETTINGS_DEB_RUNTIME tavro-settings-plugin)
set(SETTINGS_DEB_DEV tavro-settings-plugin-dev)
set(SETTINGS_DEB_REVISION 1)
set(SETTINGS_DEB_VERSION "${PROJECT_VERSION}-${SETTINGS_DEB_REVISION}")

set(SETTINGS_DEB_MAINTAINER "Tavro Panel Software <panel-software@tavro.cn>"
  CACHE STRING "Maintainer field of the Debian packages")
set(SETTINGS_DEB_ARCHITECTURE "" CACHE STRING
  "Debian architecture of the packages (amd64, arm64, armhf); empty: from CMAKE_SYSTEM_PROCESSOR")

if(SETTINGS_DEB_ARCHITECTURE)
  set(deb_architecture "${SETTINGS_DEB_ARCHITECTURE}")
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$")
  set(deb_architecture amd64)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64|ARM64)$")
  set(deb_architecture arm64)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^arm")
  # The panels' 32-bit boards run Debian's hard-float port.
  set(deb_architecture armhf)
else()
  message(WARNING "No Debian architecture known for processor '${CMAKE_SYSTEM_PROCESSOR}': "
                  "set SETTINGS_DEB_ARCHITECTURE")
  set(deb_architecture "${CMAKE_SYSTEM_PROCESSOR}")
endif()

# Debian's multiarch folder (/usr/lib/<triplet>) is what GNUInstallDirs picks
# for a native build with the prefix /usr, but never when cross-compiling;
# scripts/package sets CMAKE_INSTALL_LIBDIR itself for every architecture.
if(CMAKE_LIBRARY_ARCHITECTURE AND NOT CMAKE_INSTALL_LIBDIR STREQUAL "lib/${CMAKE_LIBRARY_ARCHITECTURE}")
  message(STATUS "Packages would install below /usr/${CMAKE_INSTALL_LIBDIR}, not Debian's "
                 "lib/${CMAKE_LIBRARY_ARCHITECTURE}: use scripts/package for packages")
endif()

# The changelog's latest entry must be the version being packaged.
file(STRINGS "${CMAKE_CURRENT_LIST_DIR}/debian/changelog" changelog_head LIMIT_COUNT 1)
if(NOT changelog_head MATCHES "^${SETTINGS_DEB_RUNTIME} \\(${SETTINGS_DEB_VERSION}\\) ")
  message(FATAL_ERROR "cmake/debian/changelog starts with '${changelog_head}': add an entry for "
                      "${SETTINGS_DEB_RUNTIME} (${SETTINGS_DEB_VERSION})")
endif()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_CURRENT_LIST_DIR}/debian/changelog")
set(changelog_gz "${CMAKE_CURRENT_BINARY_DIR}/debian/changelog.Debian.gz")
file(MAKE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/debian")
# -n: no name or time stamp in the archive, so that the file is the same on
# every architecture, as Multi-Arch: same requires.
execute_process(COMMAND gzip -9nc "${CMAKE_CURRENT_LIST_DIR}/debian/changelog"
                OUTPUT_FILE "${changelog_gz}" RESULT_VARIABLE gzip_failed)
if(gzip_failed)
  message(FATAL_ERROR "gzip could not compress cmake/debian/changelog")
endif()

foreach(component_package IN ITEMS "runtime;${SETTINGS_DEB_RUNTIME}" "dev;${SETTINGS_DEB_DEV}")
  list(GET component_package 0 component)
  list(GET component_package 1 package)
  install(FILES "${CMAKE_CURRENT_LIST_DIR}/debian/copyright" "${changelog_gz}"
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package}
          PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
          COMPONENT ${component})
  # The packages go to panels, not to Debian: there is no bug asking for
  # them that their first changelog entry could close.
  set(overrides "${CMAKE_CURRENT_BINARY_DIR}/debian/${package}.overrides")
  file(WRITE "${overrides}" "# Built for Tavro panels, never uploaded to Debian.\n"
                            "${package}: initial-upload-closes-no-bugs\n")
  install(FILES "${overrides}" DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides
          RENAME ${package} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
          COMPONENT ${component})
endforeach()

# The CMake package of the -dev package.
set(SETTINGS_PLUGIN_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/hmi/plugins)
set(SETTINGS_PLUGIN_FILE_NAME ${CMAKE_SHARED_MODULE_PREFIX}settingsplugin${CMAKE_SHARED_MODULE_SUFFIX})
set(SETTINGS_CMAKE_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/TavroSettings)
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/TavroSettingsConfig.cmake.in"
  "${CMAKE_CURRENT_BINARY_DIR}/TavroSettingsConfig.cmake"
  INSTALL_DESTINATION ${SETTINGS_CMAKE_INSTALL_DIR}
  PATH_VARS CMAKE_INSTALL_INCLUDEDIR SETTINGS_PLUGIN_INSTALL_DIR)
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/TavroSettingsConfigVersion.cmake"
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/TavroSettingsConfig.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/TavroSettingsConfigVersion.cmake"
        DESTINATION ${SETTINGS_CMAKE_INSTALL_DIR} COMPONENT dev)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${SETTINGS_DEB_RUNTIME})
set(CPACK_PACKAGE_VENDOR Tavro)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${SETTINGS_DEB_MAINTAINER}")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL runtime dev)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/DebMultiArch.cmake")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${SETTINGS_DEB_REVISION})
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${deb_architecture})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${SETTINGS_DEB_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SOURCE ${SETTINGS_DEB_RUNTIME})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(qt_runtime ">= 5.15.0")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${SETTINGS_DEB_RUNTIME})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
# libc6 2.34 covers the symbol versions of every architecture's build (the
# 64-bit time functions of armhf included).
set(SETTINGS_DEB_RUNTIME_DEPENDS
  "libc6 (>= 2.34)"
  "libgcc-s1 (>= 3.0)"
  "libstdc++6 (>= 5.2)"
  "libqrcodegencpp1 (>= 1.8.0)"
  "libqt5core5a (${qt_runtime})"
  "libqt5gui5 (${qt_runtime}) | libqt5gui5-gles (${qt_runtime})"
  "libqt5network5 (${qt_runtime})"
  "libqt5svg5 (${qt_runtime})"
  "libqt5widgets5 (${qt_runtime})")
string(JOIN ", " CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS ${SETTINGS_DEB_RUNTIME_DEPENDS})
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
"device-settings plug-in for the Tavro HMI runtime
The settings window of Tavro operator panels, loaded by the HMI runtime as
a Qt 5 plug-in (interface cn.tavro.SettingsInterface). On it the person at
the panel sets the display brightness, the key click, date and time and the
language, configures the wired Ethernet ports, WLAN, 4G and the VPN, and
reads the device's version and cloud identity as a QR code.
.
The plug-in runs the panel's firmware and network tools and keeps its
settings in the device-information EEPROM and the runtime's system
registers; it is of use on a Tavro panel only.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME ${SETTINGS_DEB_DEV})
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${SETTINGS_DEB_RUNTIME} (= ${SETTINGS_DEB_VERSION}), qtbase5-dev")
set(CPACK_COMPONENT_DEV_DESCRIPTION
"device-settings plug-in for the Tavro HMI runtime - development files
The settings window of Tavro operator panels, loaded by the HMI runtime as
a Qt 5 plug-in (interface cn.tavro.SettingsInterface).
.
This package holds what a host application needs to load the plug-in: the
interface header tavro/settingsinterface.h and the CMake package
TavroSettings, whose target Tavro::SettingsInterface carries the include
folder and whose variable TavroSettings_PLUGIN names the installed plug-in
for QPluginLoader.")

include(CPack)
