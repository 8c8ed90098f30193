#pragma once

#include <string>
#include <string_view>

namespace ostrel {

/// The address of a station: the trimmed text up to and including the first ":"; "---" stays as it
/// is; empty when there is no ":".
std::string AddressPart(std::string_view text);

/// Pops the part before the first CR LF, trimmed; the text keeps the trimmed rest. Without CR LF
/// the whole text is returned untrimmed and the text becomes empty.
std::string NextLine(std::string& text);

/// The same with a one-character separator.
std::string NextToken(std::string& text, char separator);

enum class Blanks { kTrim, kKeep };

/// The part before the separator, trimmed unless blanks are kept; without it the text as it is.
std::string LeftOf(std::string_view text, std::string_view separator,
                   Blanks blanks = Blanks::kTrim);

/// The trimmed remainder after the first occurrence of the key; empty when the key is absent.
std::string ValueAfter(std::string_view text, std::string_view key);

/// The position of the last occurrence, in bytes counted from 1; 0 when absent or when there is
/// nothing to find.
std::size_t LastPos(std::string_view text, std::string_view find);

/// Takes blanks and leading and trailing pairs of CR LF off.
std::string TrimAnswer(std::string_view text);

/// True when the device rejected the line: for "<<…>>", and for an answer of which every line is
/// nothing but a refusal ("Zugriff verweigert", "access denied", in any case). A name or a text
/// that only holds such words is none.
bool IsErrorAnswer(std::string_view answer);

/// True when the words of a refusal stand anywhere in the answer ("verweigert", "access denied", in
/// any case).
bool IsRefusal(std::string_view answer);

/// The type string in the answer to "ver.": what stands before the first ";", in upper case,
/// without its last character when a "+" stands anywhere in it.
std::string TypeFromVerAnswer(std::string_view answer);

/// The firmware version in the answer to "ver.": the second field without a leading "v" or "V".
std::string FirmwareFromVerAnswer(std::string_view answer);

}  // namespace ostrel
