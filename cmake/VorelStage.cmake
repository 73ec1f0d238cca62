# The portable folder: `cmake --install build/release --prefix FOLDER` lays out what a teacher gets.

set(CMAKE_INSTALL_MESSAGE NEVER)
set(folder .)
if(VOREL_WINDOWS)
  install(TARGETS Vorel VorelDocExport VorelFetch RUNTIME DESTINATION ${folder})
  install(TARGETS VorelRecorder RUNTIME DESTINATION VRM)
  install(TARGETS vorel_compiler_window vorel_webengine vorel_media LIBRARY DESTINATION ${folder})
endif()
install(TARGETS vorel_http LIBRARY DESTINATION ${folder})
install(TARGETS VorelCompiler vorel-course-server RUNTIME DESTINATION ${folder})
install(DIRECTORY "${CMAKE_BINARY_DIR}/sysdata/" DESTINATION SysData)
install(DIRECTORY "${CMAKE_SOURCE_DIR}/sysdata/program/" DESTINATION ${folder})
install(DIRECTORY DESTINATION Projects)

# What the portable folder needs, and no test: `cmake --build build/release --target portable`.
if(VOREL_WINDOWS)
  add_custom_target(portable DEPENDS Vorel vorel_http vorel_media vorel_webengine VorelCompiler VorelDocExport VorelFetch VorelRecorder
                                     vorel-course-server vorel_sysdata vorel_seed)
endif()
