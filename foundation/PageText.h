#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The bytes of a page that other programs and people wrote, as text and back.
namespace PageText {

/// The text of a page and how it was coded. Without a word of the page's own it is in the course's code page.
struct Decoded {
    QString Text;
    /// "UTF-8", "GB18030", …
    QByteArray Charset;
    bool HasMark = false;
};
Decoded Decode(const QByteArray& bytes);

/// The bytes again; nothing when the text can't be written in that coding without loss.
std::optional<QByteArray> Encode(const Decoded& page);

} // namespace PageText
