vorel_fuzz(vorel_fuzz_office_pages SOURCES OfficePagesFuzz.cpp USES vorel_office PkgConfig::GUMBO)
