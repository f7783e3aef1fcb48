#pragma once

#include <cstdint>
#include <functional>

#include "main_window/command_context.h"

class wxPoint;

namespace glimmer {

class CaptureList;

/// What the labels below the list and its menu do with the list itself.
enum class ListAction : uint8_t { SelectAll, SelectCurrent, SelectOther, DeleteSelected, DeleteAll, DeleteOther };

void act(ListAction action, CaptureSession& session, CaptureList& list);

/// The captures that are selected in the list, in its order; none when none is.
Captures selectedIn(const CaptureList& list, const CaptureSession& session);

/// The menu of the current capture (`pmActions`), at a place of the screen; `save` saves it.
void showActionsMenu(CaptureSession& session, CaptureList& list, const wxPoint& screen,
                     const std::function<void(CaptureDocument&)>& save);

}  // namespace glimmer
