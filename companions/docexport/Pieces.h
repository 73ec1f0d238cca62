#pragma once

#include <QString>
#include <QStringList>

/// Makes one document of those that the converter has written of a text's pieces. The converter's memory
/// grows with what it is given, so it is given a long text in pieces. Paths are native; the pieces have the
/// same reference document. All lists of points share one number, since word processors know few thousand.
/// Throws Torvane::CRunException with a message.
void JoinPieces(const QStringList& pieces, const QString& strTo);
