#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// A picture that is ready to stand in the document: its name among the document's pictures, and how large it
/// shows itself, in pixels of 1/96 inch.
struct ReadyPicture {
    QString Name;
    int Width = 0;
    int Height = 0;
};

/// What became of a picture.
struct TakenPicture {
    TakenPicture(const std::optional<ReadyPicture>& picture, const QString& strFault = {})
        : Picture(picture), Fault(strFault) {}
    std::optional<ReadyPicture> Picture;
    /// Why there is none: a text for the teacher, with the node's title for %1 and the picture's name for %2.
    QString Fault;
};

/// What the text of a page needs to know of the course around it.
struct PageSurroundings {
    /// Where a link leads: "#" and a bookmark of the document, an address outside of the course, or nothing,
    /// which leaves the link's text alone.
    std::function<QString(const QString& strReference)> Link;
    /// The picture of a reference; nothing leaves its alternative text.
    std::function<std::optional<ReadyPicture>(const QString& strReference)> Picture;
    /// A link, with its "#", to an anchor of the page itself, and the markup of that place.
    std::function<QString(const QString& strAnchor)> AnchorLink;
    std::function<QByteArray(const QString& strAnchor)> AnchorMark;
    /// The picture of a drawing that stands in the page as text (SVG).
    std::function<std::optional<ReadyPicture>(const QByteArray& drawing)> Drawing = {};
};

/// The text of a page as the converter takes it.
struct PrintedPage {
    /// Well-formed as XML is, of few elements: paragraphs, lists, tables, pictures, links and plain marks of
    /// text. Nothing in it runs or loads anything.
    QByteArray Html;
    /// Names of films, programs and pages within the page, which paper can't show.
    QStringList LeftOut;
    /// Links, with their "#", to places that the page doesn't have.
    QStringList DeadLinks;
    /// A template's words to the author stood in it, as they came; they are left out.
    bool HadHint = false;
    /// Of its text, as PaperColor gives them.
    QSet<QByteArray> Colors;
};

/// Widest and highest that a picture stands on a sheet of paper, in pixels of 1/96 inch.
inline constexpr int c_nPaperWidth = 600;
inline constexpr int c_nPaperHeight = 820;

/// A page that other programs and people wrote, of which all is taken that a printed text has. Tables that
/// only lay a page out become what stands in them. Nothing when the page is nested too deeply to be read.
std::optional<PrintedPage> ReadPrintedPage(const QString& strPage, const PageSurroundings& surroundings);

/// A picture, made to fit on the sheet. nWidth and nHeight are what its page wants, 0 for what it says
/// itself.
QByteArray PictureHtml(const ReadyPicture& picture, const QString& strAlt, int nWidth = 0, int nHeight = 0,
                       int nMaxWidth = c_nPaperWidth);

/// Text for markup, without the characters that no document may hold.
QByteArray MarkupText(const QString& strText);
