# Compiler, cache and library settings shared by every target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

find_program(VOREL_CCACHE ccache)
if(VOREL_CCACHE)
  # The base folder lets two checkouts share what they have compiled.
  set(launcher "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" CCACHE_NOHASHDIR=1
               CCACHE_SLOPPINESS=pch_defines,time_macros "${VOREL_CCACHE}")
  set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

# Network and Test stand on Core alone.
find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Network Test)
find_package(SQLiteCpp REQUIRED)
find_package(SQLite3 REQUIRED)
find_package(CURL REQUIRED)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)
find_package(LibArchive REQUIRED)
find_package(Threads REQUIRED)
if(VOREL_WINDOWS)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Multimedia Widgets WebEngineWidgets)
endif()

add_library(vorel_settings INTERFACE)
target_include_directories(vorel_settings INTERFACE "${CMAKE_SOURCE_DIR}" "${CMAKE_BINARY_DIR}")
target_compile_options(vorel_settings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                                -Woverloaded-virtual -Werror=return-type -Werror=switch)
target_compile_definitions(
  vorel_settings INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
                           QT_USE_QSTRINGBUILDER QT_NO_KEYWORDS)
if(VOREL_ASSERTIONS)
  target_compile_options(vorel_settings INTERFACE -UNDEBUG)
  target_compile_definitions(vorel_settings INTERFACE _GLIBCXX_ASSERTIONS QT_FORCE_ASSERTS)
  # Scores of test programs are linked, with all that helps a debugger: the quicker linker takes half the time. What a
  # teacher gets is linked by the usual one.
  find_program(VOREL_QUICK_LINKER ld.gold)
  if(VOREL_QUICK_LINKER)
    target_link_options(vorel_settings INTERFACE -fuse-ld=gold)
  endif()
endif()
if(VOREL_SANITIZE)
  # vptr needs run-time type information of Qt classes that Debian's Qt hides.
  target_compile_options(vorel_settings INTERFACE -fsanitize=address,undefined -fno-sanitize=vptr
                                                  -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vorel_settings INTERFACE -fsanitize=address,undefined)
endif()
if(VOREL_FUZZ)
  target_compile_options(vorel_settings INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                                                  -fno-sanitize=vptr -fno-sanitize-recover=all)
  target_link_options(vorel_settings INTERFACE -fsanitize=address,undefined)
endif()
