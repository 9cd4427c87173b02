#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

namespace lumirra {

/// News that waits for an answer without standing in the way: rows of a text, a dim line of details
/// and buttons. Takes no room while there is none.
class NoticeBar : public QWidget {
    Q_OBJECT

  public:
    struct Choice {
        QString text;
        std::function<bool()> choose;  ///< whether the row has been dealt with, and goes
    };

    explicit NoticeBar(QWidget* parent = nullptr);

    /// A row below those that are there. It is announced to assistive technology.
    void Add(const QString& text, const QString& detail, std::vector<Choice> choices);
    int Count() const;
};

}  // namespace lumirra
