target_sources(helmsman_ui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/journal_window.h ${CMAKE_CURRENT_LIST_DIR}/journal_window.cpp)
target_link_libraries(helmsman_ui PUBLIC helmsman_journal)
