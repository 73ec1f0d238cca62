#pragma once

#include "content/BookNode.h"
#include "platform/base/People.h"

#include <functional>
#include <optional>

/// What can be done with a node's file that no browser shows.
namespace NodeFile {

/// What the view of such a node says.
struct Card {
    QString strKind;
    /// Nothing: what the view shows stays.
    std::optional<QString> FileName;
    std::optional<QString> Comment;
    QString strFirstButton;
    QString strSecondButton;
    bool bOffice = false;
};
/// Nothing for a type that has no such view. Throws Torvane::CRunException when the store can't be read.
std::optional<Card> CardOf(const CBookNode& node);

/// What stands in the way of a lecture's preview, or of its being recorded again, in a sentence for a person;
/// empty for nothing.
QString VideoObstacle(bool bRecording, bool bHasPlayer, bool bHasEncoder);

/// Copies the file to where the person says. Failures are shown.
void SaveCopy(const CBookNode& node, Torvane::Dialog::MFC::IPeople& people);
/// The same of any file, a path in backslash form; strName is what is proposed as the copy's name.
void SaveCopy(const QString& strSource, const QString& strName, Torvane::Dialog::MFC::IPeople& people);

/// Opens the file in the program that edits it; tells the person when there is none.
bool OpenInProgram(CBookNode& node, Torvane::Dialog::MFC::IPeople& people);

/// Makes the Office file a web page, which takes its place as the node's content, with the open type and the
/// note that it has. isThere: whether node and course still stand behind a box. Failures are shown; false
/// when it did not come as far as to touch the content.
bool ConvertToHtml(CBookNode& node, Torvane::Dialog::MFC::IPeople& people,
                   const std::function<bool()>& isThere);

} // namespace NodeFile
