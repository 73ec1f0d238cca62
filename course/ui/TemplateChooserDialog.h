#pragma once

#include "course/Course.h"
#include "course/TemplateStore.h"

#include <QDialog>
#include <QPointer>

class CPicturePane;
class QComboBox;

/// Dialog 350: a list of the templates and the picture of the one that is selected. Object names: the dialog
/// is "templateDialog", with "templateList", "templatePicture" and the buttons "ok" and "cancel".
class CTemplateChooserDialog : public QDialog {
    Q_OBJECT
public:
    /// The template named strCurrent is selected, or the first when there is none of that name. OK is off
    /// while there is no template at all.
    CTemplateChooserDialog(const CTemplateStore& store, const QString& strCurrent, QWidget* pParent);

    /// The name that is selected; empty when there is none.
    QString GetSelected() const;

private:
    void ShowPicture();

    const CTemplateStore m_store;
    QComboBox* m_pList;
    CPicturePane* m_pPicture;
};

/// Asks with the dialog. A dialog that is already open stays below it.
class CTemplateChooser : public ITemplateChooser {
public:
    /// The window over which the dialog stands; may be set later and may be null.
    void SetParent(QWidget* pParent) { m_pParent = pParent; }

    std::optional<QString> ChooseTemplate(const QString& strCurrent) override;

private:
    QPointer<QWidget> m_pParent;
};
