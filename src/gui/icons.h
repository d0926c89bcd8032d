// SPDX-License-Identifier: MIT
// The icons of the program and its windows, drawn in every size.
#pragma once

#include <QIcon>

namespace brevant::gui {

QIcon ProductIcon();    // a chip with its pins
QIcon RegsIcon();       // cells
QIcon ProgIcon();       // lines of code, one of them marked
QIcon DataIcon();       // a grid of bytes
QIcon StackIcon();      // a pile, its top marked
QIcon SourceIcon();     // indented lines of text, one of them marked
QIcon WatchIcon();      // names and values, one of them changed
QIcon VariablesIcon();  // a value and its parts

}  // namespace brevant::gui
