target_sources(helmsman_ui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/spread_exit_dialog.h ${CMAKE_CURRENT_LIST_DIR}/spread_exit_dialog.cpp)
