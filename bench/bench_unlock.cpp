#include "bench_table.h"

#include "backup/keybag.h"
#include "sample/cipher.h"
#include "sample/keybag_writer.h"

#include <cstdlib>

/// Unlocking a keybag as today's devices write it, against the two key derivations that it cannot avoid.
int main()
{
    constexpr int outerRounds = 10'000'000;
    constexpr int innerRounds = 10'000;
    const QByteArray password = "secret";
    const QByteArray bytes =
        sample::KeybagWriter(password, {outerRounds, innerRounds}, sample::SeededGenerator(1)).bytes();
    const QByteArray salt(20, 's');
    bench::compare(
        "unlock a keybag, DPIC 10,000,000, ITER 10,000", 1.05,
        [&] {
            Keybag keybag = Keybag::parse(bytes);
            if (!keybag.unlock(password))
                std::abort();
        },
        [&] { sample::passwordKey(password, salt, outerRounds, salt, innerRounds); });
}
