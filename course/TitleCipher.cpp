#include "course/TitleCipher.h"

#include "course/BookDatabase.h"
#include "foundation/CodePage.h"
#include "foundation/SysInfo.h"

using namespace Qt::StringLiterals;

namespace {

constexpr char c_szTitleSalt[] = "Q7m!xT2z#k";

QByteArray KeyText(qint32 nCourseId) {
    const CSysInfo& settings = CSysInfo::Instance();
    const QString strText = QLatin1StringView(c_szTitleSalt) + QString::number(settings.GetProvince()) +
                            settings.GetSchoolName() + QString::number(nCourseId);
    return Md5Hex(CodePage::Encode(strText));
}

} // namespace

CTitleCipher::CTitleCipher(qint32 nCourseId) : m_key(KeyText(nCourseId)) {}

QByteArray CTitleCipher::Stored(const QString& strTitle) const {
    return Searched(QString(strTitle).replace(u'\'', "''"_L1));
}

QByteArray CTitleCipher::Searched(const QString& strTitle) const {
    // What follows a NUL would not come out of the cipher again: then two titles would be told apart that
    // read the same.
    return m_key.EncryptHex(CodePage::Encode(QStringView(strTitle).left(strTitle.indexOf(QChar(u'\0')))));
}

QString CTitleCipher::Plain(qint32 nId, QByteArrayView stored) const {
    return nId <= c_nRootNodeId ? QString::fromUtf8(stored) : CodePage::Decode(m_key.DecryptHex(stored));
}
