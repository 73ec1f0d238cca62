#pragma once

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

/// The places inside pages to which the fragments of addresses lead.
namespace PageAnchors {

struct Anchor {
    QString strName;
    /// The line of text that begins there or follows it, cut where it is long; may be empty.
    QString strText;
    /// Whether somebody may want to link there: not the name of a form's field or of a part that can't be
    /// seen, nor a mark of the editor's.
    bool bOffered = true;
};

/// In the page's order. Of several with one name the first counts. None for a page that is nested too deeply
/// to be parsed.
QList<Anchor> Find(const QString& strPage);

/// What a fragment may mean, without its "#", the likeliest first: as it stands, and with its escapes taken
/// back, which may be UTF-8 or, in old pages, bytes of the code page.
QStringList Readings(const QString& strFragment);

/// The names of a page's anchors. Links are lower-cased by rule, and browsers tell letter case.
class CNames {
public:
    CNames() = default;
    explicit CNames(const QStringList& names);

    /// The anchor that a fragment without its "#" means: one with just that name, or else one whose name
    /// differs in the case of ASCII letters alone. Empty when there is none.
    QString Meant(const QString& strFragment) const;

private:
    QSet<QString> m_exact;
    /// By their lower case, those that have capitals and stand before one without. A large page has many
    /// names.
    QHash<QString, QString> m_byLower;
};

} // namespace PageAnchors
