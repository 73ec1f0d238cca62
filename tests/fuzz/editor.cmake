vorel_fuzz(vorel_fuzz_resource_text SOURCES ResourceTextFuzz.cpp USES vorel_editor)
vorel_fuzz(vorel_fuzz_pasted_html SOURCES PastedHtmlFuzz.cpp USES vorel_editor PkgConfig::GUMBO)
