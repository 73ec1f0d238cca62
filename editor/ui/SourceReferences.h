#pragma once

#include <QString>
#include <QStringList>

/// A page's source and its references, for a text that no surface has read.
struct CSourceReferences {
    /// The text with the absolute local references of its pictures, embedded files and links in the form that
    /// a surface gives them (platform/ui/SurfaceUrls.h), and without declarations of an encoding, since it is
    /// written in the code page. All else stands as it is.
    QString strHtml;
    /// As they stand in that text, in its order. Relative ones are left out: they need no change.
    QStringList Images, Embeds, Anchors;
    /// False for a text whose tags nest too deeply for the parser and which may name files or an encoding: it
    /// stands as it is, and nobody can tell its references.
    bool bKnown = true;

    static CSourceReferences Of(const QString& strSource);
};
