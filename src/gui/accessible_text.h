// SPDX-License-Identifier: MIT
// What text views show, for screen readers: all lines as one text, the line under the cursor as the
// place that is read.
#pragma once

namespace brevant::gui {

class TextView;

// From now on every text view can be read. More than once does no harm.
void MakeTextViewsAccessible();
// The view shows something else, or its cursor has moved.
void TellReaders(TextView& view);

}  // namespace brevant::gui
