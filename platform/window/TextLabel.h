// SPDX-License-Identifier: MIT
// A label.  Where its template leaves room for one line only, what is too long for it ends in
// "…" and is told as a whole by the tool tip.
#pragma once

#include <QLabel>

namespace Platform {

class TextLabel : public QLabel {
public:
    explicit TextLabel(QWidget* parent);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    bool IsCutOff() const;
};

} // namespace Platform
