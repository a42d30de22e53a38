# panel-simulator: loads the built plug-in like the HMI runtime, on a
# throw-away simulated panel, and plays the runtime's side of it.
find_package(Qt5 5.15 REQUIRED COMPONENTS Widgets)

set(PANEL_SIMULATOR_DIR ${CMAKE_CURRENT_LIST_DIR}/app)
add_executable(panel-simulator
  ${PANEL_SIMULATOR_DIR}/main.cpp
  ${PANEL_SIMULATOR_DIR}/simulatorlog.h ${PANEL_SIMULATOR_DIR}/simulatorlog.cpp
  ${PANEL_SIMULATOR_DIR}/simulatoroptions.h ${PANEL_SIMULATOR_DIR}/simulatoroptions.cpp
  ${PANEL_SIMULATOR_DIR}/simulatorapp.h ${PANEL_SIMULATOR_DIR}/simulatorapp.cpp
  ${PANEL_SIMULATOR_DIR}/panelenvironment.h ${PANEL_SIMULATOR_DIR}/panelenvironment.cpp
  ${PANEL_SIMULATOR_DIR}/pluginhost.h ${PANEL_SIMULATOR_DIR}/pluginhost.cpp
  ${PANEL_SIMULATOR_DIR}/fifowatcher.h ${PANEL_SIMULATOR_DIR}/fifowatcher.cpp
  ${PANEL_SIMULATOR_DIR}/calllogwatcher.h ${PANEL_SIMULATOR_DIR}/calllogwatcher.cpp
  ${PANEL_SIMULATOR_DIR}/hostsession.h ${PANEL_SIMULATOR_DIR}/hostsession.cpp
  ${PANEL_SIMULATOR_DIR}/panelactivity.h ${PANEL_SIMULATOR_DIR}/panelactivity.cpp
  ${PANEL_SIMULATOR_DIR}/windowdriver.h ${PANEL_SIMULATOR_DIR}/windowdriver.cpp
  ${PANEL_SIMULATOR_DIR}/scriptrunner.h ${PANEL_SIMULATOR_DIR}/scriptrunner.cpp
  ${PANEL_SIMULATOR_DIR}/screenshotpass.h ${PANEL_SIMULATOR_DIR}/screenshotpass.cpp
  ${PANEL_SIMULATOR_DIR}/controlwindow.h ${PANEL_SIMULATOR_DIR}/controlwindow.cpp
  ${PANEL_SIMULATOR_DIR}/interrupthandler.h ${PANEL_SIMULATOR_DIR}/interrupthandler.cpp
  ${PANEL_SIMULATOR_DIR}/serverprocess.h ${PANEL_SIMULATOR_DIR}/serverprocess.cpp
  ${PANEL_SIMULATOR_DIR}/xserver.h ${PANEL_SIMULATOR_DIR}/xserver.cpp
  ${PANEL_SIMULATOR_DIR}/simulatorchild.h ${PANEL_SIMULATOR_DIR}/simulatorchild.cpp
  ${PANEL_SIMULATOR_DIR}/commandreader.h ${PANEL_SIMULATOR_DIR}/commandreader.cpp
  ${PANEL_SIMULATOR_DIR}/nestedrunner.h ${PANEL_SIMULATOR_DIR}/nestedrunner.cpp
  ${PANEL_SIMULATOR_DIR}/headlessrunner.h ${PANEL_SIMULATOR_DIR}/headlessrunner.cpp
  ${PANEL_SIMULATOR_DIR}/networkactivity.h ${PANEL_SIMULATOR_DIR}/networkactivity.cpp
  ${PANEL_SIMULATOR_DIR}/routetablewatcher.h ${PANEL_SIMULATOR_DIR}/routetablewatcher.cpp
  ${PANEL_SIMULATOR_DIR}/networklab.h ${PANEL_SIMULATOR_DIR}/networklab.cpp
  ${PANEL_SIMULATOR_DIR}/outernetwork.h ${PANEL_SIMULATOR_DIR}/outernetwork.cpp
  ${PANEL_SIMULATOR_DIR}/pingwatch.h ${PANEL_SIMULATOR_DIR}/pingwatch.cpp
  ${PANEL_SIMULATOR_DIR}/linkinterfaces.h ${PANEL_SIMULATOR_DIR}/linkinterfaces.cpp
  ${PANEL_SIMULATOR_DIR}/linkcontrols.h ${PANEL_SIMULATOR_DIR}/linkcontrols.cpp
  ${PANEL_SIMULATOR_DIR}/linkpagedriver.h ${PANEL_SIMULATOR_DIR}/linkpagedriver.cpp
)
target_include_directories(panel-simulator PRIVATE
  ${PANEL_SIMULATOR_DIR}
  ${PROJECT_SOURCE_DIR}/plugin/include)
target_link_libraries(panel-simulator PRIVATE panelkit hostlinks Qt5::Core Qt5::Gui Qt5::Widgets)

# --real-network starts the simulator in the test suite's network lab.
target_compile_definitions(panel-simulator PRIVATE
  SIMULATOR_NETLAB_RUNNER="${PROJECT_SOURCE_DIR}/tests/support/netlab/run-in-netlab")

# The plug-in of this build tree is the default; --plugin overrides it.
if(TARGET settingsplugin)
  target_compile_definitions(panel-simulator PRIVATE
    SIMULATOR_DEFAULT_PLUGIN="$<TARGET_FILE:settingsplugin>")
  add_dependencies(panel-simulator settingsplugin)
else()
  target_compile_definitions(panel-simulator PRIVATE
    SIMULATOR_DEFAULT_PLUGIN="${CMAKE_BINARY_DIR}/plugin/libsettingsplugin.so")
endif()
