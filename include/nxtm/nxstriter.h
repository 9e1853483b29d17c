// NxStringIterator: a cursor over text in either char width, and the
// collation cursor that turns text into 16-bit orders.
#ifndef NXTM_NXSTRITER_H
#define NXTM_NXSTRITER_H

#include <nxtm/nxchar.h>

class NXTM_API NxStringIterator {
 public:
  // All fields 0, format 1.
  NxStringIterator();
  // Code set 255: the default 8-bit code set; language 255: the default
  // language; format 255: 1.
  NxStringIterator(const char* text, unsigned char codeSet, unsigned char language,
                   unsigned char format);
  // Code set 255: the default 16-bit code set.
  NxStringIterator(unsigned short* text, unsigned char codeSet, unsigned char language,
                   unsigned char format);
  // A one-character text of its own holding `c`.
  explicit NxStringIterator(NxChar& c);
  // On the buffer of `text`, with its code set and language, format 8.
  explicit NxStringIterator(NxString& text);
  // Copies never own the buffer.
  NxStringIterator(const NxStringIterator& other);
  ~NxStringIterator();
  NxStringIterator& operator=(const NxStringIterator& other);

  // Stepping forward stays put while a pending list has elements left.
  NxStringIterator& operator++();
  NxStringIterator operator++(int);
  NxStringIterator& operator--();
  NxStringIterator operator--(int);
  NxStringIterator& Step(unsigned short forward);
  unsigned short operator==(NxStringIterator& other);

  // The next pending list element as a free-standing character, or a handle
  // on the current position.
  NxChar operator*();
  // 1 at the end of the text with nothing pending.
  unsigned short IsEOS();
  // Makes `list` pending; code set 255 means the iterator's own.
  void SetOverflow(const NxWCharList* list, unsigned char codeSet);

  // The next collation order (0 at the end of the text); with `trackState`
  // not 0 the collation state follows the text.
  unsigned short GetNextOrder(unsigned short trackState);
  // Applies `operation` to every character, writing the results to `target`.
  void Transform(NxStringIterator& target, NxCharOperation& operation);

  // The 32-bit weight of an order in a state.
  static uint32_t WeightOf(unsigned short order, unsigned char state) {
    if (order == 0) return 0;
    if (state != 20 && (order & 0xC000u) == 0x4000u)
      return (static_cast<uint32_t>(state) << 24) | (static_cast<uint32_t>(order & 0x407Fu) << 8) |
             ((order >> 7) & 0x7Fu);
    return (static_cast<uint32_t>(state) << 24) + (static_cast<uint32_t>(order) << 8);
  }

  // The process-wide wildcard orders.  Each is looked up on first use from
  // the default character ("*", "?", "\") in the order table of code set 1.
  static unsigned short AsteriskOrder();
  static unsigned short QuestionOrder();
  static unsigned short EscapeOrder();
  static void SetAsteriskOrder(unsigned short order);
  static void SetQuestionOrder(unsigned short order);
  static void SetEscapeOrder(unsigned short order);

  unsigned char* position;
  unsigned char codeSet;
  unsigned char language;
  unsigned char state;
  const NxWCharList* overflow;
  int16_t overflowIndex;
  unsigned char overflowCodeSet;
  unsigned char format;
  unsigned short ownsBuffer;

 private:
  explicit NxStringIterator(NxStringIterator* other);
};

#endif
