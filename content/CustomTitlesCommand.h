#pragma once

#include "content/TreeDialogs.h"
#include "course/CoursePaths.h"
#include "course/CustomTitles.h"

/// The command "设置自定义标题...": asks for the titles of the nodes of a fixed role, has the tree rename
/// them one after the other, and stores each. Throws Torvane::CRunException when a title can't be stored;
/// those before it are then both renamed and stored.
void RunCustomTitles(const CCoursePaths& paths, ITreeDialogs& dialogs, const CustomTitles::Rename& rename);
