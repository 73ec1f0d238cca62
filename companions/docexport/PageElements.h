#pragma once

#include <QByteArray>
#include <QString>

#include <gumbo.h>

// What the elements of pages are to a printed text, by their names (in lower case) and attributes. The nodes
// belong to the page's tree.

/// Shown in no browser, or a second time.
bool IsHidden(const GumboElement& element);
/// Gone with all that they hold.
bool IsDropped(const GumboElement& element, const QByteArray& name);
bool IsMedium(const QByteArray& name);
/// Begins and ends a line.
bool IsBlock(const QByteArray& name);
bool IsHeading(const QByteArray& name);
bool IsList(const QByteArray& name);
/// A list that holds nothing but lists, as word processors write the deeper ones.
bool HoldsListsAlone(const GumboNode* pList);

/// A length other than none, and not one to the left.
bool IsPositive(const QString& strLength);
/// What the element's style or attribute says, in pixels of 1/96 inch; a percentage is one of nWhole. 0 for
/// nothing, or for a unit that has no size on paper.
int Pixels(const GumboElement& element, const char* szName, int nWhole = 0);
/// What a drawing says that it shows.
QString TitleOf(const GumboNode* pDrawing);
/// Of a film, a program or a page within the page; empty when it tells none.
QString NameOfMedium(const GumboNode* pMedium);
