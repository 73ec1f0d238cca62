#pragma once

#include "course/Course.h"
#include "editor/KeptPages.h"
#include "platform/base/People.h"

#include <optional>

/// Asks the person about the pages of an open course that were being edited when the program or the machine
/// went away: about all, or about one node's. Answers the first that she wants to go on with; those behind it
/// are asked about another time. One that she gives up is removed; one that the page on disk equals goes
/// without a question; and the texts of nodes that are gone are put beside the course, which one box tells.
std::optional<KeptPage> OfferKeptPages(const CCourse& course, Torvane::Dialog::MFC::IPeople& people,
                                       std::optional<qint32> onlyNode = std::nullopt);

/// Puts a text that the editor can't take beside the course and removes its kept file, where it has one.
/// Tells the person so, or that it failed: then the kept file stays.
void PutTooLongBeside(const KeptPage& page, const CCourse& course, Torvane::Dialog::MFC::IPeople& people);
