#include "platform/ui/ChineseTexts.h"

#include <QApplication>
#include <QHash>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace {

/// The toolkit's texts without their mark of the shortcut key, and ours with it.
const QHash<QByteArray, QString>& KnownTexts() {
    static const QHash<QByteArray, QString> s_texts{
        {"OK", QStringLiteral("确定")},
        {"Cancel", QStringLiteral("取消")},
        {"Yes", QStringLiteral("是(&Y)")},
        {"No", QStringLiteral("否(&N)")},
        {"Retry", QStringLiteral("重试(&R)")},
        {"Close", QStringLiteral("关闭(&C)")},
        {"Apply", QStringLiteral("应用(&A)")},
        {"Help", QStringLiteral("帮助(&H)")},
        {"Open", QStringLiteral("打开(&O)")},
        {"Save", QStringLiteral("保存(&S)")},
        {"< Back", QStringLiteral("< 上一步(&B)")},
        {"Go Back", QStringLiteral("上一步")},
        {"Next", QStringLiteral("下一步(&N)")},
        {"Next >", QStringLiteral("下一步(&N) >")},
        {"Finish", QStringLiteral("完成(&F)")},
        {"Undo", QStringLiteral("撤销(&U)")},
        {"Redo", QStringLiteral("重复(&R)")},
        {"Cut", QStringLiteral("剪切(&T)")},
        {"Copy", QStringLiteral("拷贝(&C)")},
        {"Paste", QStringLiteral("粘贴(&P)")},
        {"Delete", QStringLiteral("删除(&D)")},
        {"Select All", QStringLiteral("全选(&A)")},
        {"Look in:", QStringLiteral("查找范围：")},
        {"File name:", QStringLiteral("文件名(&N)：")},
        {"Directory:", QStringLiteral("文件夹(&N)：")},
        {"Files of type:", QStringLiteral("文件类型：")},
        {"Name", QStringLiteral("名称")},
        {"Size", QStringLiteral("大小")},
        {"Type", QStringLiteral("类型")},
        {"Date Modified", QStringLiteral("修改日期")},
        {"Folder", QStringLiteral("文件夹")},
        {"Drive", QStringLiteral("驱动器")},
        {"Computer", QStringLiteral("计算机")},
        {"Back", QStringLiteral("后退")},
        {"Forward", QStringLiteral("前进")},
        {"Parent Directory", QStringLiteral("上级文件夹")},
        {"Create New Folder", QStringLiteral("新建文件夹")},
        {"New Folder", QStringLiteral("新建文件夹")},
        {"List View", QStringLiteral("列表")},
        {"Detail View", QStringLiteral("详细信息")},
        {"Pick Screen Color", QStringLiteral("选取屏幕颜色")},
        {"Basic colors", QStringLiteral("基本颜色")},
        {"Custom colors", QStringLiteral("自定义颜色")},
        {"Add to Custom Colors", QStringLiteral("添加到自定义颜色")},
        {"Select Color", QStringLiteral("选择颜色")},
    };
    return s_texts;
}

class CKnownTexts : public QTranslator {
public:
    using QTranslator::QTranslator;
    bool isEmpty() const override { return false; }
    QString translate(const char* szContext, const char* szText, const char*, int) const override {
        // Only the toolkit's own texts: the program's are Chinese already.
        if (!QByteArrayView(szContext).startsWith('Q'))
            return {};
        return KnownTexts().value(QByteArray(szText).replace('&', ""));
    }
};

} // namespace

void InstallChineseTexts(QApplication& application) {
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China));
    // The last one installed is asked first.
    QCoreApplication::installTranslator(new CKnownTexts(&application));
    auto* pFull = new QTranslator(&application);
    for (const QString& strFolder :
         {QString(QCoreApplication::applicationDirPath() + QStringLiteral("/translations")),
          QLibraryInfo::path(QLibraryInfo::TranslationsPath)}) {
        if (pFull->load(QStringLiteral("qtbase_zh_CN"), strFolder)) {
            QCoreApplication::installTranslator(pFull);
            return;
        }
    }
    delete pFull;
}
