#pragma once

#include "content/TreeRules.h"

#include <QIcon>
#include <QStyledItemDelegate>

#include <array>

class QAbstractItemView;

/// Draws the lines of a CBookTree, each with its image and the selected one in bold, and edits a title in
/// place. The text that was typed is not written to the line: it goes out as a signal, since the checks come
/// first.
class CTitleDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    /// strSystemData: the folder of delivered data, with the images.
    CTitleDelegate(const QString& strSystemData, QAbstractItemView* pView,
                   const std::array<int, TreeImage::c_nImages>& images = TreeImage::c_resources);

    void initStyleOption(QStyleOptionViewItem* pOption, const QModelIndex& index) const override;
    QString displayText(const QVariant& value, const QLocale& locale) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* pParent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* pEditor, const QModelIndex& index) const override;
    void setModelData(QWidget* pEditor, QAbstractItemModel* pModel, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* pEditor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    /// Tells the whole title of a line that the pane cuts off.
    bool helpEvent(QHelpEvent* pEvent, QAbstractItemView* pView, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

Q_SIGNALS:
    void TitleTyped(const QString& strTitle) const;

private:
    const QAbstractItemView& m_view;
    std::array<QIcon, TreeImage::c_nImages> m_images;
};
