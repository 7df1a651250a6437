# The windows, on displays of their own; 77 means that there is no Xvfb, openbox or xdotool.
set(desktop_tests ${CMAKE_CURRENT_LIST_DIR})
foreach(name a_run_asks_before_it_overwrites a_map_unfolds_and_runs_with_its_topics a_long_run_is_cancelled
             parameters_are_added_and_deleted_in_the_grid a_document_whose_file_is_gone_does_no_harm)
  add_test(NAME desktop.${name} COMMAND Python3::Interpreter ${desktop_tests}/test_windows.py --build ${CMAKE_BINARY_DIR}
                                        WindowTest.test_${name})
  set_tests_properties(desktop.${name} PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 300)
endforeach()

# The scripts of these cases work the windows' controls, and everything comes out as it does without windows.
foreach(name dialog-choose dialog-manage dialog-new dialog-scripts)
  add_test(NAME windows.${name}
           COMMAND Python3::Interpreter ${desktop_tests}/on_display.py ${Python3_EXECUTABLE} ${desktop_tests}/../run_cases.py
                   --build ${CMAKE_BINARY_DIR} --windows ${name})
  set_tests_properties(windows.${name} PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 900)
endforeach()
