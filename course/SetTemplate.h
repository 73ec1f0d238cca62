#pragma once

#include "course/Course.h"
#include "platform/base/People.h"

#include <QtGlobal>

#include <functional>

/// The command that gives the open course another template. Asks for the template, refuses one whose
/// suggested tree differs, stores the name, hands the new background colour to the tree view at once, and
/// replaces the skin in the node resource folder. Pages of nodes stay as they are. Tells the person how it
/// ended; throws Torvane::CRunException when the project file can't be written.
void RunSetTemplate(CCourse& course, Torvane::Dialog::MFC::IPeople& people, ITemplateChooser& chooser,
                    const std::function<void(quint32 nBackColor)>& setBackColor);
