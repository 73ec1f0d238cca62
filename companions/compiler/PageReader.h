#pragma once

#include "companions/compiler/HtmlText.h"
#include "companions/compiler/References.h"
#include "companions/compiler/SourceFile.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// What the references of a file have led to.
struct FoundSources {
    /// Other pages in which anchors were looked up.
    QStringList Read;
    /// Files that are not published by themselves.
    QStringList Strays;
};

/// A page of the built-in editor, made ready to stand within the frame.
struct ReadyPage {
    HtmlText::Fragment Content;
    /// References into the course that lead to nothing.
    QStringList DeadReferences;
    /// References to places that a page of the course does not have.
    QStringList DeadPlaces;
    FoundSources Found;
};

/// Nothing when the page is nested too deeply to be taken apart.
std::optional<ReadyPage> ReadPage(const QByteArray& bytes, const CReferences& references,
                                  const CReferences::Place& place);

/// A page or style sheet that goes to the site as it is but for the letter case of its references: its
/// bytes, with what need not change untouched. A page in UTF-8 or UTF-16 that doesn't say so gets a byte
/// order mark, one in the code page a declaration.
enum class ESourceText { Page, XmlPage, StyleSheet };
struct CorrectedFile {
    QByteArray Bytes;
    FoundSources Found;
    /// References into the course that lead to nothing, each once.
    QStringList DeadReferences = {};
};
CorrectedFile CorrectedText(ESourceText kind, const QByteArray& bytes, const CReferences& references,
                            const CReferences::Place& place);

/// A plain text in UTF-8 with a byte order mark: without a server nobody tells the browser what it is.
/// Nothing for one that needs no help.
std::optional<QByteArray> WithSaidCoding(const QByteArray& bytes);

/// A page with one more script, at the beginning of its head.
QByteArray WithScript(const QByteArray& page, const QString& strAddress);
