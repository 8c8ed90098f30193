#pragma once

#include "base/messages.h"

namespace ostrel::text {

// The command console's own texts: Own(300) to Own(399).
inline constexpr int kRow = Own(300);
inline constexpr int kTooLong = Own(301);
inline constexpr int kMoreRows = Own(302);
inline constexpr int kTooManyLines = Own(303);
inline constexpr int kRegLCommands = Own(304);
inline constexpr int kLogNotWritten = Own(305);
inline constexpr int kFileNotRead = Own(306);
inline constexpr int kFileTooLarge = Own(307);
inline constexpr int kFileNoText = Own(308);
inline constexpr int kSavedAsUtf8 = Own(309);
inline constexpr int kNoLineHolds = Own(310);

// The page.
inline constexpr int kLoadScript = Own(312);
inline constexpr int kSaveScript = Own(313);
inline constexpr int kSaveScriptAs = Own(314);
inline constexpr int kNewScript = Own(315);
inline constexpr int kReadScriptButton = Own(316);
inline constexpr int kSendSeveral = Own(317);
inline constexpr int kExportAnswers = Own(318);
inline constexpr int kCheckScript = Own(319);
inline constexpr int kSendMenu = Own(320);
inline constexpr int kSendAll = Own(321);
inline constexpr int kSendFromCursor = Own(322);
inline constexpr int kSendLine = Own(323);
inline constexpr int kSendSelection = Own(324);
inline constexpr int kCopyText = Own(325);
inline constexpr int kPasteText = Own(326);
inline constexpr int kUndo = Own(327);
inline constexpr int kRedo = Own(328);
inline constexpr int kFind = Own(329);
inline constexpr int kFindText = Own(330);
inline constexpr int kFindNext = Own(331);
inline constexpr int kFindBack = Own(332);
inline constexpr int kNotFound = Own(333);
inline constexpr int kRecentFiles = Own(334);
inline constexpr int kNoFiles = Own(335);
inline constexpr int kShowAnswers = Own(336);
inline constexpr int kLogFile = Own(337);
inline constexpr int kNewScriptName = Own(338);
inline constexpr int kCaretLine = Own(339);
inline constexpr int kCharacters = Own(340);
inline constexpr int kLineOf = Own(341);
inline constexpr int kDiscardScript = Own(342);
inline constexpr int kTextFiles = Own(343);
inline constexpr int kScriptPane = Own(344);
inline constexpr int kAnswerPane = Own(345);

}  // namespace ostrel::text
