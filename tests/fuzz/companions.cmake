find_package(PkgConfig REQUIRED)
pkg_check_modules(GUMBO REQUIRED IMPORTED_TARGET gumbo)
vorel_fuzz(vorel_fuzz_html_text SOURCES HtmlTextFuzz.cpp USES vorel_compiler_core PkgConfig::GUMBO)
vorel_fuzz(vorel_fuzz_template_archive SOURCES TemplateArchiveFuzz.cpp USES vorel_fetch_core)
