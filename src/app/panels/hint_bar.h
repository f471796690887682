#pragma once

#include <QFrame>

#include <functional>
#include <map>

class QVBoxLayout;

namespace tarvo {

// What the operator should know and need not answer: one line a hint, each with its action, if it has one, and a
// button that takes it away. Not shown while there is none.
class HintBar : public QFrame {
    Q_OBJECT

public:
    explicit HintBar(QWidget* parent = nullptr);

    struct Action {
        QString caption;
        std::function<void()> perform;
    };
    // The hint of this name, in place of an earlier one; an empty text takes it away.
    void show_hint(const QString& name, const QString& text, const Action& action = {});
    void clear_hints();

private:
    std::map<QString, QWidget*> rows_;
    QVBoxLayout* layout_;
};

} // namespace tarvo
