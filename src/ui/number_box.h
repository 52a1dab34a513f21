#pragma once

#include <QSpinBox>
#include <QString>

namespace quillomar {

// A number that counts when it is typed whole, not digit by digit.
[[nodiscard]] QSpinBox* MakeNumberBox(int smallest, int largest, QWidget* parent);

// Shows a number without taking it for the user's. The range grows to hold it.
void ShowNumber(QSpinBox& box, int number);

}  // namespace quillomar
