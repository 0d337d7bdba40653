target_sources(helmsman_ui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/algo_centre_window.h ${CMAKE_CURRENT_LIST_DIR}/algo_centre_window.cpp
    ${CMAKE_CURRENT_LIST_DIR}/algo_order_dialog.h ${CMAKE_CURRENT_LIST_DIR}/algo_order_dialog.cpp
    ${CMAKE_CURRENT_LIST_DIR}/algo_setting_dialog.h ${CMAKE_CURRENT_LIST_DIR}/algo_setting_dialog.cpp)
