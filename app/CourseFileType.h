#pragma once

#include "platform/base/FileAssociation.h"

/// The kind of the project files, as the desktop knows it.
Platform::FileType CourseFileType();

/// The program that opens them.
Platform::ProgramEntry OwnProgramEntry();
