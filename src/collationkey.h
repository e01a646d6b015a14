// The orders that comparisons read as more than a character.
#ifndef VQ_COLLATIONKEY_H
#define VQ_COLLATIONKEY_H

namespace vq {

// The orders that patterns read as any run of characters, as any one character, and as a mark before a character that
// stands for itself (0: none). Setting asterisk or question to 0 restores that of '*' or '?'.
unsigned short AsteriskOrder();
unsigned short QuestionOrder();
unsigned short EscapeOrder();
void SetAsteriskOrder(unsigned short order);
void SetQuestionOrder(unsigned short order);
void SetEscapeOrder(unsigned short order);

}  // namespace vq

#endif
