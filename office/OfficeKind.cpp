#include "office/OfficeKind.h"

#include "foundation/Paths.h"

#include <QHash>

using namespace Qt::Literals::StringLiterals;

namespace Torvane::Office {
namespace {

// Sheets and documents that other systems export under an Office ending are often pages or Office's own XML.
bool IsMarkup(const QByteArray& head) {
    QByteArray text = head.startsWith("\xEF\xBB\xBF") ? head.mid(3) : head;
    if (head.startsWith("\xFF\xFE"))
        text = head.mid(2).replace('\0', "");
    text = text.trimmed().toLower();
    return text.startsWith("<?xml") || text.startsWith("<!doctype html") || text.startsWith("<html") ||
           text.startsWith("<table") || text.startsWith("<meta") || text.startsWith("<head");
}

} // namespace

EKind KindOf(const QString& strName) {
    static const QHash<QString, EKind> kinds = [] {
        QHash<QString, EKind> result;
        for (const QString& str : {u".doc"_s, u".docx"_s, u".docm"_s, u".dot"_s, u".dotx"_s, u".dotm"_s,
                                   u".rtf"_s, u".odt"_s, u".ott"_s})
            result.insert(str, EKind::Document);
        for (const QString& str : {u".xls"_s, u".xlsx"_s, u".xlsm"_s, u".xlsb"_s, u".xlt"_s, u".xltx"_s,
                                   u".xltm"_s, u".ods"_s, u".ots"_s})
            result.insert(str, EKind::Sheet);
        for (const QString& str : {u".ppt"_s, u".pptx"_s, u".pptm"_s, u".pps"_s, u".ppsx"_s, u".ppsm"_s,
                                   u".pot"_s, u".potx"_s, u".potm"_s, u".odp"_s, u".otp"_s})
            result.insert(str, EKind::Presentation);
        return result;
    }();
    return kinds.value(File::Extension(strName).toLower(), EKind::None);
}

bool LooksLike(EKind eKind, const QByteArray& head) {
    if (eKind == EKind::None)
        return false;
    if (head.startsWith("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1") || head.startsWith("PK\x03\x04"))
        return true;
    if (eKind == EKind::Presentation)
        return false;
    // Sheets older than the container format begin with a record of their own.
    const bool bOldSheet = head.startsWith("\x09\x08") || head.startsWith("\x09\x04") ||
                           head.startsWith(QByteArrayView("\x09\x02\x06\x00", 4)) ||
                           head.startsWith(QByteArrayView("\x09\x00\x04\x00", 4));
    return IsMarkup(head) || (eKind == EKind::Document ? head.startsWith("{\\rtf") : bOldSheet);
}

} // namespace Torvane::Office
