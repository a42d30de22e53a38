# The plug-in's compiled-in resource set "SettingsResource": the style sheet,
# the two translation catalogues and the pictures of all pages.
#
# include()d from plugin/CMakeLists.txt (it works in that directory's scope).
# Every picture is drawn as an SVG under icons/. Those listed in
# SETTINGS_PNG_ICONS are rendered to PNG with the svgrender tool at build
# time, those in SETTINGS_SVG_ICONS are compiled in as SVG; a name may be in
# both lists. Provides:
#
#   SETTINGS_RESOURCE_SOURCES  the generated C++ source (qrc_SettingsResource.cpp),
#                              to be compiled by a target of this directory
#   SETTINGS_RESOURCE_NAMES    every path of the set, e.g. ":/Resources/close.png"
#   settings_resources         custom target that generates the source
#   settings_icon_sheet        custom target writing resources/icon_sheet.png,
#                              a review grid of all pictures (not built by default)
#
# Both variables are also cached (INTERNAL), so that directories outside
# plugin/ (the tests) see them. Every target of this directory that lists
# ${SETTINGS_RESOURCE_SOURCES} is made to depend on settings_resources at the
# end of the directory, so that the generating commands never run twice in
# parallel.
#
# For cross builds, point SETTINGS_SVGRENDER at an svgrender built for the
# build host.

set(SETTINGS_PNG_ICONS
  auto_backlight_off background brightness button_down button_up buzzer
  close close1 connected dnsInfo enter_down enter_up file_manager
  inital_window k.lamp0_00 k.lamp0_01 k.lamp0_02 left_selected
  left_unselected minus network network1 networkcard plus restart
  right_selected right_unselected scrollbar sd setting_blue setting_button
  setting_white switch_off switch_on time titleBar udisk version
  version_white)

set(SETTINGS_SVG_ICONS
  connect_1 connect_2 connect_3 connect_4 connect_5 connect_6 connected
  loading refresh refresh-green unconnnected wifi wifi0 wifi1 wifi2 wifi3)

set(SETTINGS_TRANSLATIONS Translate_EN Translate_CN)

set(SETTINGS_SVGRENDER "" CACHE FILEPATH
  "svgrender executable to use instead of the one built here (cross builds)")

set(_settings_res_src "${CMAKE_CURRENT_LIST_DIR}")
set(_settings_res_out "${CMAKE_CURRENT_BINARY_DIR}/resources")
file(MAKE_DIRECTORY "${_settings_res_out}")

# Adds the command that renders icons/<stem>.svg to <stem>.png and appends
# the output to the list variable named by out_list.
function(_settings_render_icon stem out_list)
  set(svg "${_settings_res_src}/icons/${stem}.svg")
  set(png "${_settings_res_out}/${stem}.png")
  if(SETTINGS_SVGRENDER)
    set(renderer "${SETTINGS_SVGRENDER}")
    set(renderer_dep "${SETTINGS_SVGRENDER}")
  else()
    set(renderer "$<TARGET_FILE:svgrender>")
    set(renderer_dep svgrender)
  endif()
  add_custom_command(
    OUTPUT "${png}"
    COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ${SETTINGS_TOOL_ENVIRONMENT}
            QT_LOGGING_RULES=default.warning=false
            ${renderer} "${svg}" "${png}"
    DEPENDS "${svg}" ${renderer_dep}
    COMMENT "Rendering icon ${stem}.png"
    VERBATIM)
  set(${out_list} ${${out_list}} "${png}" PARENT_SCOPE)
endfunction()

# Adds the command that compiles translations/<name>.ts to <name>.qm.
function(_settings_compile_translation name out_list)
  set(ts "${_settings_res_src}/translations/${name}.ts")
  set(qm "${_settings_res_out}/${name}.qm")
  add_custom_command(
    OUTPUT "${qm}"
    COMMAND Qt5::lrelease -silent "${ts}" -qm "${qm}"
    DEPENDS "${ts}"
    COMMENT "Compiling translation ${name}.qm"
    VERBATIM)
  set(${out_list} ${${out_list}} "${qm}" PARENT_SCOPE)
endfunction()

# Writes the .qrc file (only when its content changes) and sets the list of
# resource paths in the variable named by names_var.
function(_settings_write_qrc qrc names_var)
  set(body "  <qresource prefix=\"/\">\n")
  string(APPEND body "    <file alias=\"style.qss\">${_settings_res_src}/style.qss</file>\n")
  set(names ":/style.qss")
  foreach(name IN LISTS SETTINGS_TRANSLATIONS)
    string(APPEND body "    <file alias=\"Languages/${name}.qm\">${_settings_res_out}/${name}.qm</file>\n")
    list(APPEND names ":/Languages/${name}.qm")
  endforeach()
  string(APPEND body "  </qresource>\n  <qresource prefix=\"/Resources\">\n")
  foreach(stem IN LISTS SETTINGS_PNG_ICONS)
    string(APPEND body "    <file alias=\"${stem}.png\">${_settings_res_out}/${stem}.png</file>\n")
    list(APPEND names ":/Resources/${stem}.png")
  endforeach()
  foreach(stem IN LISTS SETTINGS_SVG_ICONS)
    string(APPEND body "    <file alias=\"${stem}.svg\">${_settings_res_src}/icons/${stem}.svg</file>\n")
    list(APPEND names ":/Resources/${stem}.svg")
  endforeach()
  string(APPEND body "  </qresource>\n")
  file(GENERATE OUTPUT "${qrc}" CONTENT "<!DOCTYPE RCC>\n<RCC version=\"1.0\">\n${body}</RCC>\n")
  set(${names_var} ${names} PARENT_SCOPE)
endfunction()

# Makes every target of this directory that lists the generated source
# depend on settings_resources (run at the end of the directory).
function(_settings_bind_resource_users)
  get_property(targets DIRECTORY PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    if(target STREQUAL "settings_resources")
      continue()
    endif()
    get_target_property(sources ${target} SOURCES)
    if(sources AND "${SETTINGS_RESOURCE_SOURCES}" IN_LIST sources)
      add_dependencies(${target} settings_resources)
    endif()
  endforeach()
endfunction()

set(_settings_generated "")
foreach(stem IN LISTS SETTINGS_PNG_ICONS)
  _settings_render_icon(${stem} _settings_generated)
endforeach()
foreach(name IN LISTS SETTINGS_TRANSLATIONS)
  _settings_compile_translation(${name} _settings_generated)
endforeach()
set(_settings_svgs "")
foreach(stem IN LISTS SETTINGS_SVG_ICONS)
  list(APPEND _settings_svgs "${_settings_res_src}/icons/${stem}.svg")
endforeach()

set(_settings_qrc "${_settings_res_out}/SettingsResource.qrc")
_settings_write_qrc("${_settings_qrc}" _settings_names)

# Format version 3 with zlib: readable by any Qt 5.15 QtCore (the panel's
# Qt is not guaranteed to have zstd support).
set(_settings_qrc_cpp "${CMAKE_CURRENT_BINARY_DIR}/qrc_SettingsResource.cpp")
add_custom_command(
  OUTPUT "${_settings_qrc_cpp}"
  COMMAND Qt5::rcc --name SettingsResource --format-version 3
          --compress-algo zlib --output "${_settings_qrc_cpp}" "${_settings_qrc}"
  DEPENDS "${_settings_qrc}" "${_settings_res_src}/style.qss"
          ${_settings_generated} ${_settings_svgs}
  COMMENT "Compiling resource set SettingsResource"
  VERBATIM)
set_source_files_properties("${_settings_qrc_cpp}" PROPERTIES SKIP_AUTOGEN TRUE)
add_custom_target(settings_resources DEPENDS "${_settings_qrc_cpp}")

set(_settings_pngs ${_settings_generated})
list(FILTER _settings_pngs INCLUDE REGEX "\\.png$")
if(NOT SETTINGS_SVGRENDER)
  add_custom_target(settings_icon_sheet
    COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ${SETTINGS_TOOL_ENVIRONMENT}
            QT_LOGGING_RULES=default.warning=false
            $<TARGET_FILE:svgrender> --sheet "${_settings_res_out}/icon_sheet.png"
            ${_settings_pngs} ${_settings_svgs}
    DEPENDS settings_resources
    COMMENT "Writing ${_settings_res_out}/icon_sheet.png"
    VERBATIM)
endif()

set(SETTINGS_RESOURCE_SOURCES "${_settings_qrc_cpp}" CACHE INTERNAL
  "Generated C++ sources of the SettingsResource resource set")
set(SETTINGS_RESOURCE_NAMES "${_settings_names}" CACHE INTERNAL
  "Resource paths of the SettingsResource resource set")
set(SETTINGS_RESOURCE_SOURCES "${_settings_qrc_cpp}")
set(SETTINGS_RESOURCE_NAMES "${_settings_names}")

if(CMAKE_VERSION VERSION_GREATER_EQUAL 3.19)
  cmake_language(DEFER CALL _settings_bind_resource_users)
endif()
