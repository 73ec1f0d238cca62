# What keeps the windows of the real program from being painted, for stalls.sh: a plug-in beside that of tests/journey.
if(VOREL_WINDOWS)
  add_library(vorelstalls MODULE StallMeter.cpp)
  target_link_libraries(vorelstalls PRIVATE vorel_settings Qt6::Gui ${CMAKE_DL_LIBS} Threads::Threads)
  set_target_properties(vorelstalls PROPERTIES AUTOMOC ON PREFIX "" LIBRARY_OUTPUT_DIRECTORY
                                                                    "${CMAKE_BINARY_DIR}/lib/plugins/generic")
endif()
