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

/// What the engine's pages must know: JSON, for each kind of media by its extension without the dot what it
/// is called and whether the engine may be able to play it, {"wmv":["Windows Media 视频",false],…}.
QString AsJson();

} // namespace MediaKinds
