#pragma once

#include <QFrame>
#include <QTimer>

#include <functional>
#include <map>

class QVBoxLayout;

namespace tarvo {

// What the operator should know and need not answer: one line a hint, each with its action, if it has one, and a
// button that takes it away. Not shown while there is none.
class HintBar : public QFrame {
    Q_OBJECT

public:
    // Lies over the upper edge of its parent, and pushes nothing.
    explicit HintBar(QWidget* parent);

    struct Action {
        QString caption;
        std::function<void()> perform;
    };
    // The hint of this name, in place of an earlier one; an empty text takes it away.
    void show_hint(const QString& name, const QString& text, const Action& action = {});
    void clear_hints();
    void show_note(const QString& text); // goes by itself after a moment

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void lie_on_upper_edge();
    QPixmap hint_icon() const;

    std::map<QString, QWidget*> rows_;
    QTimer note_timer_;
    QVBoxLayout* layout_;
};

} // namespace tarvo
