#pragma once

#include "office/OfficeFiles.h"
#include "office/OfficeKind.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

/// Makes a clean page of what the converter writes for a document or a workbook.
namespace Torvane::Office {

/// Answers the reference that shall stand for a picture of the page; empty drops the picture.
using PictureNamer = std::function<QString(const QString& strReference)>;

/// A whole page in UTF-8. Only elements, attributes and style properties that are known to be harmless get
/// into it: scripts, objects and forms are dropped, and links that lead into this machine lose their target.
/// Headers and footers, which belong to sheets of paper, are left out. Nothing when the page is nested too
/// deeply to be read, or when mayGoOn ended it. strPlainText is the document as plain text, which tells how
/// its lists are numbered.
std::optional<QByteArray> CleanPage(EKind eKind, const QByteArray& html, const QString& strTitle,
                                    const PictureNamer& pictures, const QString& strPlainText = {},
                                    const MayGoOn& mayGoOn = {});

/// Declarations of a style, without those that are unknown, that could load something or that only mean
/// the converter's own defaults. Empty when none is left.
QString CleanStyle(const QString& strDeclarations);

/// Whether a link may stay: an address of the net or of a mailbox, or a place in the same page.
bool IsKeptLink(const QString& strAddress);

} // namespace Torvane::Office
