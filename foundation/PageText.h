#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The bytes of a page that other programs and people wrote, as text and back.
namespace PageText {

/// The text of a page and how it was coded. A page that says nothing of it is in the course's code page,
/// unless its bytes can only be UTF-8 or UTF-16; so is one whose bytes belie what it says.
struct Decoded {
    QString Text;
    /// "UTF-8", "GB18030", …
    QByteArray Charset;
    bool HasMark = false;
    /// Only the bytes tell that it isn't in the code page, which not every browser sees.
    bool IsUnsaid = false;
    /// It is in the code page without saying so, which not every browser guesses.
    bool IsSilent = false;
};
Decoded Decode(const QByteArray& bytes);

/// Whether a text that says UTF-8 is something else all the same, as one that was pasted or set with a
/// declaration of its own and written in the code page: hardly a character of it is UTF-8 then.
bool IsNoUtf8(const QByteArray& bytes);

/// Whether so much of it is right as UTF-8 that it can't be the code page.
bool IsSurelyUtf8(const QByteArray& bytes);

/// The bytes again; nothing when the text can't be written in that coding without loss.
std::optional<QByteArray> Encode(const Decoded& page);

} // namespace PageText
