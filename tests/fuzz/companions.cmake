find_package(PkgConfig REQUIRED)
pkg_check_modules(GUMBO REQUIRED IMPORTED_TARGET gumbo)
vorel_fuzz(vorel_fuzz_html_text SOURCES HtmlTextFuzz.cpp USES vorel_compiler_core PkgConfig::GUMBO)
