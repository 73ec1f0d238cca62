#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <gumbo.h>

// Formulas and drawings that stand in pages, written anew as XML: pages leave out quotes and namespaces, and
// spell names as they like. The nodes belong to the page's tree, which is not deep.

/// A formula (MathML) for the converter, which makes one of the word processor's own. Empty for one that is
/// too large to be one.
QByteArray FormulaMarkup(const GumboNode* pFormula);

/// The drawings (SVG) of a page, each as a file of its own.
class CPageDrawings {
public:
    /// The tree must outlive the object.
    explicit CPageDrawings(const GumboNode* pPage) : m_pPage(pPage) {}

    /// A drawing with what it takes from others of the page by "#" and a name (symbols, gradients, clips), as
    /// far as it is of a bearable size, and with the page's style sheet if it refers to one. color, "RRGGBB"
    /// or empty, is that of the text around it.
    QByteArray Read(const GumboNode* pDrawing, const QByteArray& color);

    /// Nothing is drawn in it: it only keeps what other drawings take.
    static bool IsStock(const GumboNode* pDrawing);

private:
    void LookAround();

    const GumboNode* const m_pPage;
    bool m_bLooked = false;
    QHash<QString, const GumboNode*> m_named;
    QByteArray m_style;
};
