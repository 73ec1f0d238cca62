#pragma once

#include "foundation/HtmlTree.h"

#include <QHash>
#include <QString>

/// What the styles of a pasted text mean, in the terms of the editor's own commands.
namespace PastedHtml {

/// How a run of text looks.
struct Format {
    bool bBold = false;
    bool bItalic = false;
    bool bUnderline = false;
    bool bStrike = false;
    enum class EVertical { None, Super, Sub } Vertical = EVertical::None;
    /// "#rrggbb"; empty for the page's own.
    QString strColour;
    QString strHighlight;
};

/// The declarations of one element, as far as they are ever asked for: names in lower case, values trimmed
/// and in lower case. However long a text is, no more of it is held than that.
class CDeclarations {
public:
    void Add(QStringView strDeclarations);
    void Add(const CDeclarations& others) { m_values.insert(others.m_values); }
    QString operator[](const QString& strName) const { return m_values.value(strName); }
    bool Holds(const QString& strName, const QString& strPart) const;
    bool IsEmpty() const { return m_values.isEmpty(); }

    /// Makes of a format the one within an element with these declarations.
    void Apply(Format& format) const;
    /// "center" or "right" where the text stands so; everything else is how a page stands anyway.
    QString Align() const;
    /// A width or height: "120" in pixels or "50%"; empty when there is none that is sensible.
    QString Length(const QString& strName) const;
    /// A border around at least one side.
    bool HasBorder() const;
    bool IsHidden() const;
    /// Blanks and line ends stand as they are; no value where nothing is said.
    std::optional<bool> KeepsBlanks() const;

private:
    QHash<QString, QString> m_values;
};

/// The rules of a text's own style sheets that name a class and nothing else: office programs say there what
/// cells look like.
class CStyleSheet {
public:
    explicit CStyleSheet(const GumboNode* pRoot);
    CDeclarations Of(const GumboElement& element, const QString& strName) const;

private:
    void Read(QStringView strSheet);
    void AddRule(QString strSelectors, QStringView strDeclarations);

    QHash<QString, CDeclarations> m_classes;
};

/// The first colour that a value names as "#rrggbb", if somebody chose it: black, white and what lies near
/// the greys between them is how text and ground look anyway, and would hide a text on another ground.
QString ChosenColour(const QString& strValue);

/// "120" and "50%" as an attribute has them, "90pt" and "120px" in pixels; empty for anything else.
QString LengthOf(const QString& strValue);

} // namespace PastedHtml
