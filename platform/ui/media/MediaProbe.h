#pragma once

#include <QList>
#include <QString>

#include <functional>

/// Whether the player's back end may be given a file: it trusts its library's word on a film and divides by
/// what damaged ones leave at zero, which would end the program; and the library follows lists of other files
/// and addresses, wherever they lead. So a file is looked at first, and only plain films and recordings pass.
/// Opens the file (native path) and may take long; ends soon when goOn answers false. markers gets the places
/// where its chapters or markers begin, in milliseconds.
bool IsPlainMedium(const QString& strFile, const std::function<bool()>& goOn, QList<qint64>& markers);
