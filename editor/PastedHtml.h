#pragma once

#include <QString>

#include <functional>
#include <optional>

/// What other programs put on the clipboard, as a piece of a page: browsers and office programs copy their
/// own looks along, which would break the template's.
namespace PastedHtml {

/// Answers the reference that shall stand for a picture of the text; empty drops the picture. Called in the
/// order of the text, and for all that a hostile text may call a picture.
using PictureNamer = std::function<QString(const QString& strReference)>;

struct Fragment {
    QString strHtml;
    /// Whether it says anything, besides showing pictures.
    bool bText = false;
};

/// Of a text in HTML, in whatever way a clipboard wraps it: what it says and how it is built (paragraphs,
/// headings, lists, tables, links, pictures), and of its looks what the editor's own commands make: bold,
/// italic, underlined, struck out, raised and lowered letters, centred and right-hand paragraphs, and colours
/// that somebody chose. Lists that an office program writes as paragraphs become lists. Nothing in it runs,
/// loads or reaches into this machine but what the namer answers.
///
/// No value for a text that is too long or nested too deeply: its plain form is then the way out.
std::optional<Fragment> Clean(const QString& strHtml, const PictureNamer& pictures);

/// Plain text as markup: line ends become breaks, and blanks that markup would lose stay.
QString FromPlainText(QString strText);

} // namespace PastedHtml
