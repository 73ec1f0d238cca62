#pragma once

#include <QString>

/// Which part of the program shows a file: the browser engine plays little of what courses are made of.
namespace MediaKinds {

enum class EWay {
    Browser, ///< the engine shows it
    Player,  ///< the player does
    Program  ///< only a program of its own
};

struct SKind {
    EWay Way = EWay::Browser;
    /// For a person, "Windows Media 视频"; empty when unknown.
    QString strName;
};

/// Of a file by its extension, which has its dot and any letter case. Without an extension the engine looks
/// into the file.
SKind Of(const QString& strExtension);

/// The same of a path or of what a URL points at.
SKind OfFile(const QString& strPath);

/// Whether a card can stand in a page for such a file, see AsJson.
bool HasCard(const QString& strPath);

/// What the script must know that puts cards into pages, JSON:
///   files    by the extension without its dot: [name, whether the engine may play it, whether that is sound]
///   classes  by the class of a plug-in its name
///   types    [pattern of what a page asks for, name], the first that fits counts
///   schemes  of addresses that the desktop may be asked for, besides files
///   texts    what the cards say
QString AsJson();

} // namespace MediaKinds
