target_sources(helmsman_ui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/template_menu.h ${CMAKE_CURRENT_LIST_DIR}/template_menu.cpp
    ${CMAKE_CURRENT_LIST_DIR}/template_name_dialog.h ${CMAKE_CURRENT_LIST_DIR}/template_name_dialog.cpp
    ${CMAKE_CURRENT_LIST_DIR}/template_manager_dialog.h
    ${CMAKE_CURRENT_LIST_DIR}/template_manager_dialog.cpp
    ${CMAKE_CURRENT_LIST_DIR}/spread_exit_dialog.h ${CMAKE_CURRENT_LIST_DIR}/spread_exit_dialog.cpp
    ${CMAKE_CURRENT_LIST_DIR}/manual_spread_chart.h ${CMAKE_CURRENT_LIST_DIR}/manual_spread_chart.cpp
    ${CMAKE_CURRENT_LIST_DIR}/spread_price_rows.h ${CMAKE_CURRENT_LIST_DIR}/spread_price_rows.cpp
    ${CMAKE_CURRENT_LIST_DIR}/manual_spread_window.h
    ${CMAKE_CURRENT_LIST_DIR}/manual_spread_window.cpp)
