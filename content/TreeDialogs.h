#pragma once

#include "content/NodeFileParams.h"

#include <QString>
#include <QStringList>

#include <optional>

class CBookNode;

/// The dialogs of the tree's commands, apart from their windows.
class ITreeDialogs {
public:
    virtual ~ITreeDialogs() = default;

    /// "确认删除" over the titles that a deletion takes along; true for OK.
    virtual bool ConfirmDeletion(const QString& strTitles) = 0;
    /// "输入栏目标题": the text typed, or nothing when cancelled.
    virtual std::optional<QString> AskTitles(const QString& strPreset) = 0;
    /// "设置打开类型": 0 to 3, or nothing when cancelled. Any other present value shows as 0.
    virtual std::optional<qint32> AskOpenType(qint32 nPresent) = 0;
    /// "自定义标题": eight texts in the order of CustomTitles::Roles(), or nothing when cancelled. The field
    /// of the introduction is disabled where bIntroduction is false.
    virtual std::optional<QStringList> AskCustomTitles(const QStringList& titles, bool bIntroduction) = 0;
    /// "创建栏目文件向导" for the node: what its content is to be made of, checked, or nothing when
    /// cancelled.
    virtual std::optional<CNodeFileParams> AskContent(const ContentPreset& preset, CBookNode& node) = 0;
};
