target_sources(helmsman_ui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/qt_prompter.h ${CMAKE_CURRENT_LIST_DIR}/qt_prompter.cpp
    ${CMAKE_CURRENT_LIST_DIR}/trade_option_page.h ${CMAKE_CURRENT_LIST_DIR}/trade_option_page.cpp)
target_sources(helmsman_ui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/window_placement.h ${CMAKE_CURRENT_LIST_DIR}/window_placement.cpp)
