target_sources(helmsman_ui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/sort_list_ctrl.h ${CMAKE_CURRENT_LIST_DIR}/sort_list_ctrl.cpp)
