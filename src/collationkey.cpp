#include "collationkey.h"

#include <atomic>

#include "vqlanguagecontext.h"

namespace vq {
namespace {

// Filled on first use, from code set 1; several threads may fill it with the same value.
unsigned short OrderOnFirstUse(std::atomic<unsigned short>& slot, unsigned short code) {
    unsigned short order = slot.load(std::memory_order_relaxed);
    if (order != 0) return order;
    unsigned short orders[2];
    VqLanguageContext::QueryCodeSet(1)->GetOrders(code, 0, orders);
    slot.store(orders[0], std::memory_order_relaxed);
    return orders[0];
}

constinit std::atomic<unsigned short> asterisk{0};
constinit std::atomic<unsigned short> question{0};
constinit std::atomic<unsigned short> escape{0};

}  // namespace

unsigned short AsteriskOrder() { return OrderOnFirstUse(asterisk, '*'); }

unsigned short QuestionOrder() { return OrderOnFirstUse(question, '?'); }

unsigned short EscapeOrder() { return escape.load(std::memory_order_relaxed); }

void SetAsteriskOrder(unsigned short order) { asterisk.store(order, std::memory_order_relaxed); }

void SetQuestionOrder(unsigned short order) { question.store(order, std::memory_order_relaxed); }

void SetEscapeOrder(unsigned short order) { escape.store(order, std::memory_order_relaxed); }

}  // namespace vq
