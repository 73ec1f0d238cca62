#pragma once

#include <QByteArray>
#include <QString>

/// A colour of a page as the document takes it: "RRGGBB", of few shades, since each is a style of its own.
/// Empty for one that says nothing (black and greys) or can't be read on paper, and for what is no colour.
QByteArray PaperColor(const QString& strColor);
