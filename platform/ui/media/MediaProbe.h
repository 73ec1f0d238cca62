#pragma once

#include <QList>
#include <QString>

#include <functional>

/// What a medium's file says of it and the player's back end passes over.
struct SMediumFacts {
    /// Milliseconds: where its chapters or markers begin.
    QList<qint64> Markers;
    /// The width of a picture's point by its height: films of discs and cameras have other points than
    /// screens.
    double dPoint = 1;
    /// By how many degrees a picture is turned to the right before it is shown: 0, 90, 180 or 270.
    int nTurn = 0;
};

/// Whether the player's back end may be given a file: it trusts its library's word on a film and divides by
/// what damaged ones leave at zero, which would end the program; and the library follows lists of other files
/// and addresses, wherever they lead. So a file is looked at first, and only plain films and recordings pass.
/// Opens the file (native path) and may take long; ends soon when goOn answers false. facts are of a plain
/// one.
bool IsPlainMedium(const QString& strFile, const std::function<bool()>& goOn, SMediumFacts& facts);
