#include "ui/RowButtons.h"

#include "ui/Retranslation.h"

#include <QApplication>
#include <QPersistentModelIndex>
#include <QPushButton>
#include <QStyleOptionButton>

namespace tarnwick::ui {

namespace {

QString buttonText(const QModelIndex& index, int role) {
    return index.data(role).toString();
}

} // namespace

RowButtons::RowButtons(QListView* list, int textRole, int accessibleNameRole)
    : QObject(list)
    , m_list(list)
    , m_textRole(textRole)
    , m_accessibleNameRole(accessibleNameRole) {
    // Connected after the view's own: a reset has already dropped the old buttons.
    QAbstractItemModel* model = m_list->model();
    connect(model, &QAbstractItemModel::modelReset, this, &RowButtons::placeButtons);
    connect(model, &QAbstractItemModel::rowsInserted, this, &RowButtons::placeButtons);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &RowButtons::placeButtons);
    connect(model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex& first, const QModelIndex& last) {
                showButtons(first.row(), last.row());
            });
    placeButtons();
    // The rows' texts, the buttons' among them, are the model's translations of the moment.
    keepTranslated(m_list, [this] {
        showButtons(0, m_list->model()->rowCount() - 1);
        m_list->viewport()->update();
    });
}

void RowButtons::placeButtons() {
    QAbstractItemModel* model = m_list->model();
    QWidget* previous = m_list;
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row, 0);
        auto* button = qobject_cast<QPushButton*>(m_list->indexWidget(index));
        if (!button) {
            button = new QPushButton(m_list);
            button->setObjectName(m_list->objectName() + QStringLiteral("Button"));
            connect(button, &QPushButton::clicked, this, [this, at = QPersistentModelIndex(index)] {
                if (at.isValid())
                    Q_EMIT clicked(at.row());
            });
            m_list->setIndexWidget(index, button);
        }
        QWidget::setTabOrder(previous, button);
        previous = button;
    }
    showButtons(0, model->rowCount() - 1);
}

void RowButtons::showButtons(int first, int last) {
    QAbstractItemModel* model = m_list->model();
    for (int row = std::max(first, 0); row <= last && row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row, 0);
        auto* button = qobject_cast<QPushButton*>(m_list->indexWidget(index));
        if (!button)
            continue;
        const QString text = buttonText(index, m_textRole);
        if (button->text() != text) {
            button->setText(text);
            // The row's content gives way to a wider or narrower button.
            m_list->update(index);
            m_list->itemDelegateForIndex(index)->updateEditorGeometry(
                button, QStyleOptionViewItem(), index);
        }
        button->setAccessibleName(index.data(m_accessibleNameRole).toString());
        // A keyboard user whose button goes away stays in the list rather than nowhere, also
        // when the button's window is behind a sheet and takes the focus back later.
        if (text.isEmpty() && button->window()->focusWidget() == button)
            m_list->setFocus();
        button->setVisible(!text.isEmpty());
    }
}

bool RowButtonListView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    return trigger != CurrentChanged && QListView::edit(index, trigger, event);
}

RowButtonDelegate::RowButtonDelegate(int textRole, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_textRole(textRole) {}

QSize RowButtonDelegate::sizeHint(const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const {
    const QSize content = QStyledItemDelegate::sizeHint(option, index);
    return {content.width(), std::max(content.height(), buttonHeight(option) + 4)};
}

void RowButtonDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    QStyleOptionViewItem content = option;
    content.rect = contentRect(option, index);
    QStyledItemDelegate::paint(painter, content, index);
}

void RowButtonDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                             const QModelIndex& index) const {
    const auto* view =
        qobject_cast<const QAbstractItemView*>(editor->parentWidget()->parentWidget());
    const QRect row = view ? view->visualRect(index) : option.rect;
    const QSize size = editor->sizeHint();
    editor->setGeometry(row.right() + 1 - buttonMargin - size.width(),
                        row.top() + (row.height() - size.height()) / 2, size.width(),
                        size.height());
    // The view shows every row's widget as it lays the rows out; a row without an action has
    // no button to show.
    editor->setVisible(!buttonText(index, m_textRole).isEmpty());
}

QRect RowButtonDelegate::contentRect(const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const {
    const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
    const QWidget* button = view ? view->indexWidget(index) : nullptr;
    if (!button || buttonText(index, m_textRole).isEmpty())
        return option.rect;
    return option.rect.adjusted(0, 0, -(button->sizeHint().width() + 2 * buttonMargin), 0);
}

int RowButtonDelegate::buttonHeight(const QStyleOptionViewItem& option) {
    const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
    QStyleOptionButton button;
    button.fontMetrics = option.fontMetrics;
    button.text = QStringLiteral("Xg");
    const QSize text(option.fontMetrics.horizontalAdvance(button.text),
                     option.fontMetrics.height());
    return style->sizeFromContents(QStyle::CT_PushButton, &button, text, option.widget).height();
}

} // namespace tarnwick::ui
