target_sources(helmsman_ui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/local_trigger_window.h ${CMAKE_CURRENT_LIST_DIR}/local_trigger_window.cpp)
