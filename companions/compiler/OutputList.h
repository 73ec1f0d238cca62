#pragma once

#include "companions/compiler/OutputFolder.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>

/// The list of what the compiler wrote, which lies in the output: a line for each file, with fields between
/// tabs. It is a text that anybody may have changed.
namespace OutputList {

struct List {
    QString strOwner;
    /// COutputFolder::PlaceOf; empty in older lists.
    QString strPlace;
    QHash<QString, OutputRecord> Files;
};

/// Nothing for what is no such list. Of several lines for a file the last counts. Lines that name no file
/// below the folder are passed over.
std::optional<List> Read(const QByteArray& bytes);
/// The first line, behind which a line is appended for each file.
QByteArray Head(const QString& strOwner, const QString& strPlace);
void Append(QByteArray& list, const QString& strName, const OutputRecord& record);

/// Whether a name with "/" between components stays below its folder.
bool IsSafeName(const QString& strName);

} // namespace OutputList
