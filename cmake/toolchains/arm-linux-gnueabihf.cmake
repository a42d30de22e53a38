# armhf panels (Debian armhf: ARMv7, hard-float).
set(PANEL_TRIPLET arm-linux-gnueabihf)
set(PANEL_PROCESSOR armv7l)
set(PANEL_QEMU arm)
include(${CMAKE_CURRENT_LIST_DIR}/arm-panel.cmake)
