target_sources(helmsman_ui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/robot_launcher_window.h ${CMAKE_CURRENT_LIST_DIR}/robot_launcher_window.cpp
    ${CMAKE_CURRENT_LIST_DIR}/grids_spread_window.h ${CMAKE_CURRENT_LIST_DIR}/grids_spread_window.cpp
    ${CMAKE_CURRENT_LIST_DIR}/blader_window.h ${CMAKE_CURRENT_LIST_DIR}/blader_window.cpp
    ${CMAKE_CURRENT_LIST_DIR}/auto_spread_window.h ${CMAKE_CURRENT_LIST_DIR}/auto_spread_window.cpp
    ${CMAKE_CURRENT_LIST_DIR}/auto_spread_window_build.cpp
    ${CMAKE_CURRENT_LIST_DIR}/auto_spread_labels.h)
