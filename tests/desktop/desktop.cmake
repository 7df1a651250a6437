# Window tests on virtual displays; 77 means that Xvfb, openbox or xdotool is missing.
set(desktop_tests ${CMAKE_CURRENT_LIST_DIR})

# vlxslt_add_window_tests(FILE CLASS NAME...)
function(vlxslt_add_window_tests file class)
  foreach(name ${ARGN})
    add_test(NAME desktop.${name} COMMAND Python3::Interpreter ${desktop_tests}/${file} --build ${CMAKE_BINARY_DIR}
                                          ${class}.test_${name})
    set_tests_properties(desktop.${name} PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 300)
  endforeach()
endfunction()

vlxslt_add_window_tests(test_dialogs.py DialogTest a_run_asks_before_it_overwrites
                        a_transformation_is_made_edited_and_deleted parameters_are_typed_and_deleted_in_the_grid
                        a_pop_up_keeps_the_focus_while_a_save_goes_on a_dialog_on_its_own_shows_its_run)
vlxslt_add_window_tests(test_workbench.py WorkbenchTest a_map_unfolds_and_runs_with_its_topics
                        documents_are_opened_with_the_chooser_and_again_from_the_recent_ones files_are_dragged_in
                        a_document_whose_file_is_gone_does_no_harm a_problem_opens_the_editor_at_its_line
                        an_opened_result_is_viewed_and_saved
                        preferences_check_a_processor_and_keep_comments
                        a_processor_that_is_added_after_a_run_can_be_used)
vlxslt_add_window_tests(test_shutdown.py ShutdownTest a_long_run_is_cancelled closing_during_a_run_asks_and_ends_whole
                        a_run_that_never_ends_can_be_left a_display_that_goes_away_loses_nothing
                        a_signal_ends_a_dialog_and_a_question)

# Dialog cases whose scripts drive the windows' controls; the results are those of a run without windows.
foreach(name dialog-advanced dialog-manage dialog-new dialog-scripts)
  add_test(NAME windows.${name}
           COMMAND Python3::Interpreter ${desktop_tests}/on_display.py ${Python3_EXECUTABLE} ${desktop_tests}/../run_cases.py
                   --build ${CMAKE_BINARY_DIR} --windows ${name})
  set_tests_properties(windows.${name} PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 900)
endforeach()
