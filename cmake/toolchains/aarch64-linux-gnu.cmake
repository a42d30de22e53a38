# arm64 panels (Debian arm64).
set(PANEL_TRIPLET aarch64-linux-gnu)
set(PANEL_PROCESSOR aarch64)
set(PANEL_QEMU aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/arm-panel.cmake)
