#include "spectrum/Logarithms.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <initializer_list>

#if defined(__GNUC__) && defined(__x86_64__)
#include <immintrin.h>
#define TESSARELLE_VECTOR_LOG 1
#endif

namespace {

#ifdef TESSARELLE_VECTOR_LOG

// The GNU C library's logarithm (Arm's optimized routines, MIT licence), as
// the library installed here has it: ln 2 in two parts, the polynomial's
// five coefficients, then for each of 128 subintervals of [0.6875, 1.375)
// 1/c and log(c) of a point c near its centre. Bit patterns, so nothing is
// lost to decimal.
constexpr std::uint64_t Ln2Hi = 0x3fe62e42fefa3800ULL;
constexpr std::uint64_t Ln2Lo = 0x3d2ef35793c76730ULL;
constexpr std::uint64_t Poly[5] = {0xbfe0000000000001ULL, 0x3fd555555551305bULL, 0xbfcfffffffeb4590ULL,
                                   0x3fc999b324f10111ULL, 0xbfc55575e506c89fULL};
alignas(32) constexpr std::uint64_t Table[256] = {
    0x3ff734f0c3e0de9fULL, 0xbfd7cc7f79e69000ULL,
    0x3ff713786a2ce91fULL, 0xbfd76feec20d0000ULL,
    0x3ff6f26008fab5a0ULL, 0xbfd713e31351e000ULL,
    0x3ff6d1a61f138c7dULL, 0xbfd6b85b38287800ULL,
    0x3ff6b1490bc5b4d1ULL, 0xbfd65d5590807800ULL,
    0x3ff69147332f0cbaULL, 0xbfd602d076180000ULL,
    0x3ff6719f18224223ULL, 0xbfd5a8ca86909000ULL,
    0x3ff6524f99a51ed9ULL, 0xbfd54f4356035000ULL,
    0x3ff63356aa8f24c4ULL, 0xbfd4f637c36b4000ULL,
    0x3ff614b36b9ddc14ULL, 0xbfd49da7fda85000ULL,
    0x3ff5f66452c65c4cULL, 0xbfd445923989a800ULL,
    0x3ff5d867b5912c4fULL, 0xbfd3edf439b0b800ULL,
    0x3ff5babccb5b90deULL, 0xbfd396ce448f7000ULL,
    0x3ff59d61f2d91a78ULL, 0xbfd3401e17bda000ULL,
    0x3ff5805612465687ULL, 0xbfd2e9e2ef468000ULL,
    0x3ff56397cee76bd3ULL, 0xbfd2941b3830e000ULL,
    0x3ff54725e2a77f93ULL, 0xbfd23ec58cda8800ULL,
    0x3ff52aff42064583ULL, 0xbfd1e9e129279000ULL,
    0x3ff50f22dbb2bddfULL, 0xbfd1956d2b48f800ULL,
    0x3ff4f38f4734ded7ULL, 0xbfd141679ab9f800ULL,
    0x3ff4d843cfde2840ULL, 0xbfd0edd094ef9800ULL,
    0x3ff4bd3ec078a3c8ULL, 0xbfd09aa518db1000ULL,
    0x3ff4a27fc3e0258aULL, 0xbfd047e65263b800ULL,
    0x3ff4880524d48434ULL, 0xbfcfeb224586f000ULL,
    0x3ff46dce1b192d0bULL, 0xbfcf474a7517b000ULL,
    0x3ff453d9d3391854ULL, 0xbfcea4443d103000ULL,
    0x3ff43a2744b4845aULL, 0xbfce020d44e9b000ULL,
    0x3ff420b54115f8fbULL, 0xbfcd60a22977f000ULL,
    0x3ff40782da3ef4b1ULL, 0xbfccc00104959000ULL,
    0x3ff3ee8f5d57fe8fULL, 0xbfcc202956891000ULL,
    0x3ff3d5d9a00b4ce9ULL, 0xbfcb81178d811000ULL,
    0x3ff3bd60c010c12bULL, 0xbfcae2c9ccd3d000ULL,
    0x3ff3a5242b75dab8ULL, 0xbfca45402e129000ULL,
    0x3ff38d22cd9fd002ULL, 0xbfc9a877681df000ULL,
    0x3ff3755bc5847a1cULL, 0xbfc90c6d69483000ULL,
    0x3ff35dce49ad36e2ULL, 0xbfc87120a645c000ULL,
    0x3ff34679984dd440ULL, 0xbfc7d68fb4143000ULL,
    0x3ff32f5cceffcb24ULL, 0xbfc73cb83c627000ULL,
    0x3ff3187775a10d49ULL, 0xbfc6a39a9b376000ULL,
    0x3ff301c8373e3990ULL, 0xbfc60b3154b7a000ULL,
    0x3ff2eb4ebb95f841ULL, 0xbfc5737d76243000ULL,
    0x3ff2d50a0219a9d1ULL, 0xbfc4dc7b8fc23000ULL,
    0x3ff2bef9a8b7fd2aULL, 0xbfc4462c51d20000ULL,
    0x3ff2a91c7a0c1babULL, 0xbfc3b08abc830000ULL,
    0x3ff293726014b530ULL, 0xbfc31b996b490000ULL,
    0x3ff27dfa5757a1f5ULL, 0xbfc2875490a44000ULL,
    0x3ff268b39b1d3bbfULL, 0xbfc1f3b9f879a000ULL,
    0x3ff2539d838ff5bdULL, 0xbfc160c8252ca000ULL,
    0x3ff23eb7aac9083bULL, 0xbfc0ce7f57f72000ULL,
    0x3ff22a012ba940b6ULL, 0xbfc03cdc49fea000ULL,
    0x3ff2157996cc4132ULL, 0xbfbf57bdbc4b8000ULL,
    0x3ff201201dd2fc9bULL, 0xbfbe370896404000ULL,
    0x3ff1ecf4494d480bULL, 0xbfbd17983ef94000ULL,
    0x3ff1d8f5528f6569ULL, 0xbfbbf9674ed8a000ULL,
    0x3ff1c52311577e7cULL, 0xbfbadc79202f6000ULL,
    0x3ff1b17c74cb26e9ULL, 0xbfb9c0c3e7288000ULL,
    0x3ff19e010c2c1ab6ULL, 0xbfb8a646b372c000ULL,
    0x3ff18ab07bb670bdULL, 0xbfb78d01b3ac0000ULL,
    0x3ff1778a25efbcb6ULL, 0xbfb674f145380000ULL,
    0x3ff1648d354c31daULL, 0xbfb55e0e6d878000ULL,
    0x3ff151b990275fddULL, 0xbfb4485cdea1e000ULL,
    0x3ff13f0ea432d24cULL, 0xbfb333d94d6aa000ULL,
    0x3ff12c8b7210f9daULL, 0xbfb22079f8c56000ULL,
    0x3ff11a3028ecb531ULL, 0xbfb10e4698622000ULL,
    0x3ff107fbda8434afULL, 0xbfaffa6c6ad20000ULL,
    0x3ff0f5ee0f4e6bb3ULL, 0xbfadda8d4a774000ULL,
    0x3ff0e4065d2a9fceULL, 0xbfabbcece4850000ULL,
    0x3ff0d244632ca521ULL, 0xbfa9a1894012c000ULL,
    0x3ff0c0a77ce2981aULL, 0xbfa788583302c000ULL,
    0x3ff0af2f83c636d1ULL, 0xbfa5715e67d68000ULL,
    0x3ff09ddb98a01339ULL, 0xbfa35c8a49658000ULL,
    0x3ff08cabaf52e7dfULL, 0xbfa149e364154000ULL,
    0x3ff07b9f2f4e28fbULL, 0xbf9e72c082eb8000ULL,
    0x3ff06ab58c358f19ULL, 0xbf9a55f152528000ULL,
    0x3ff059eea5ecf92cULL, 0xbf963d62cf818000ULL,
    0x3ff04949cdd12c90ULL, 0xbf9228fb8caa0000ULL,
    0x3ff038c6c6f0ada9ULL, 0xbf8c317b20f90000ULL,
    0x3ff02865137932a9ULL, 0xbf8419355daa0000ULL,
    0x3ff0182427ea7348ULL, 0xbf781203c2ec0000ULL,
    0x3ff008040614b195ULL, 0xbf60040979240000ULL,
    0x3fefe01ff726fa1aULL, 0x3f6feff384900000ULL,
    0x3fefa11cc261ea74ULL, 0x3f87dc41353d0000ULL,
    0x3fef6310b081992eULL, 0x3f93cea3c4c28000ULL,
    0x3fef25f63ceeadcdULL, 0x3f9b9fc114890000ULL,
    0x3feee9c8039113e7ULL, 0x3fa1b0d8ce110000ULL,
    0x3feeae8078cbb1abULL, 0x3fa58a5bd001c000ULL,
    0x3fee741aa29d0c9bULL, 0x3fa95c8340d88000ULL,
    0x3fee3a91830a99b5ULL, 0x3fad276aef578000ULL,
    0x3fee01e009609a56ULL, 0x3fb07598e598c000ULL,
    0x3fedca01e577bb98ULL, 0x3fb253f5e30d2000ULL,
    0x3fed92f20b7c9103ULL, 0x3fb42edd8b380000ULL,
    0x3fed5cac66fb5cceULL, 0x3fb606598757c000ULL,
    0x3fed272caa5ede9dULL, 0x3fb7da76356a0000ULL,
    0x3fecf26e3e6b2ccdULL, 0x3fb9ab434e1c6000ULL,
    0x3fecbe6da2a77902ULL, 0x3fbb78c7bb0d6000ULL,
    0x3fec8b266d37086dULL, 0x3fbd431332e72000ULL,
    0x3fec5894bd5d5804ULL, 0x3fbf0a3171de6000ULL,
    0x3fec26b533bb9f8cULL, 0x3fc067152b914000ULL,
    0x3febf583eeece73fULL, 0x3fc147858292b000ULL,
    0x3febc4fd75db96c1ULL, 0x3fc2266ecdca3000ULL,
    0x3feb951e0c864a28ULL, 0x3fc303d7a6c55000ULL,
    0x3feb65e2c5ef3e2cULL, 0x3fc3dfc33c331000ULL,
    0x3feb374867c9888bULL, 0x3fc4ba366b7a8000ULL,
    0x3feb094b211d304aULL, 0x3fc5933928d1f000ULL,
    0x3feadbe885f2ef7eULL, 0x3fc66acd2418f000ULL,
    0x3feaaf1d31603da2ULL, 0x3fc740f8ec669000ULL,
    0x3fea82e63fd358a7ULL, 0x3fc815c0f51af000ULL,
    0x3fea5740ef09738bULL, 0x3fc8e92954f68000ULL,
    0x3fea2c2a90ab4b27ULL, 0x3fc9bb3602f84000ULL,
    0x3fea01a01393f2d1ULL, 0x3fca8bed1c2c0000ULL,
    0x3fe9d79f24db3c1bULL, 0x3fcb5b515c01d000ULL,
    0x3fe9ae2505c7b190ULL, 0x3fcc2967ccbcc000ULL,
    0x3fe9852ef297ce2fULL, 0x3fccf635d5486000ULL,
    0x3fe95cbaeea44b75ULL, 0x3fcdc1bd3446c000ULL,
    0x3fe934c69de74838ULL, 0x3fce8c01b8cfe000ULL,
    0x3fe90d4f2f6752e6ULL, 0x3fcf5509c0179000ULL,
    0x3fe8e6528effd79dULL, 0x3fd00e6c121fb800ULL,
    0x3fe8bfce9fcc007cULL, 0x3fd071b80e93d000ULL,
    0x3fe899c0dabec30eULL, 0x3fd0d46b9e867000ULL,
    0x3fe87427aa2317fbULL, 0x3fd13687334bd000ULL,
    0x3fe84f00acb39a08ULL, 0x3fd1980d67234800ULL,
    0x3fe82a49e8653e55ULL, 0x3fd1f8ffe0cc8000ULL,
    0x3fe8060195f40260ULL, 0x3fd2595fd7636800ULL,
    0x3fe7e22563e0a329ULL, 0x3fd2b9300914a800ULL,
    0x3fe7beb377dcb5adULL, 0x3fd3187210436000ULL,
    0x3fe79baa679725c2ULL, 0x3fd377266dec1800ULL,
    0x3fe77907f2170657ULL, 0x3fd3d54ffbaf3000ULL,
    0x3fe756cadbd6130cULL, 0x3fd432eee32fe000ULL,
};

double asDouble(std::uint64_t w)
{
    double d;
    std::memcpy(&d, &w, sizeof d);
    return d;
}

// The library's main path four numbers at a time; lanes it would take
// elsewhere go to std::log.
__attribute__((target("avx2,fma"))) void fourAtATime(const double *x, double *y, int n)
{
    const auto *table = reinterpret_cast<const double *>(Table);
    const __m256d ln2hi = _mm256_set1_pd(asDouble(Ln2Hi));
    const __m256d ln2lo = _mm256_set1_pd(asDouble(Ln2Lo));
    const __m256d a0 = _mm256_set1_pd(asDouble(Poly[0]));
    const __m256d a1 = _mm256_set1_pd(asDouble(Poly[1]));
    const __m256d a2 = _mm256_set1_pd(asDouble(Poly[2]));
    const __m256d a3 = _mm256_set1_pd(asDouble(Poly[3]));
    const __m256d a4 = _mm256_set1_pd(asDouble(Poly[4]));
    const __m256d minusOne = _mm256_set1_pd(-1.0);
    // The subintervals are counted from 0x3fe6000000000000, the bits of 0.6875.
    const __m256i off = _mm256_set1_epi64x(0x3fe6000000000000LL);
    const __m256i exponentBits = _mm256_set1_epi64x(static_cast<long long>(0xfff0000000000000ULL));
    const __m256i lastEntry = _mm256_set1_epi64x(127);
    // The main path: positive normal finite numbers outside [1 - 2^-4, 1 + 0x1.09p-4),
    // the bits compared as signed integers (negative numbers come out below).
    const __m256i belowNormal = _mm256_set1_epi64x(0x0010000000000000LL - 1);
    const __m256i infinity = _mm256_set1_epi64x(0x7ff0000000000000LL);
    const __m256i belowNear1 = _mm256_set1_epi64x(0x3fee000000000000LL - 1);
    const __m256i aboveNear1 = _mm256_set1_epi64x(0x3ff1090000000000LL);
    // The upper halves of the four 64-bit lanes, for the exponent.
    const __m256i upperHalves = _mm256_setr_epi32(1, 3, 5, 7, 0, 2, 4, 6);
    int j = 0;
    for (; j + 4 <= n; j += 4) {
        const __m256i ix = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(x + j));
        const __m256i normal =
            _mm256_and_si256(_mm256_cmpgt_epi64(ix, belowNormal), _mm256_cmpgt_epi64(infinity, ix));
        const __m256i near1 =
            _mm256_and_si256(_mm256_cmpgt_epi64(ix, belowNear1), _mm256_cmpgt_epi64(aboveNear1, ix));
        const int main = _mm256_movemask_pd(_mm256_castsi256_pd(_mm256_andnot_si256(near1, normal)));

        const __m256i tmp = _mm256_sub_epi64(ix, off);
        const __m256i entry = _mm256_slli_epi64(_mm256_and_si256(_mm256_srli_epi64(tmp, 45), lastEntry), 1);
        const __m128i k =
            _mm_srai_epi32(_mm256_castsi256_si128(_mm256_permutevar8x32_epi32(tmp, upperHalves)), 20);
        const __m256d z = _mm256_castsi256_pd(_mm256_sub_epi64(ix, _mm256_and_si256(tmp, exponentBits)));
        const __m256d invc = _mm256_i64gather_pd(table, entry, 8);
        const __m256d logc = _mm256_i64gather_pd(table + 1, entry, 8);
        const __m256d kd = _mm256_cvtepi32_pd(k);

        // log(x) = log1p(z/c - 1) + log(c) + k ln 2, in the library's order.
        const __m256d r = _mm256_fmadd_pd(z, invc, minusOne);
        const __m256d w = _mm256_fmadd_pd(kd, ln2hi, logc);
        const __m256d p12 = _mm256_fmadd_pd(r, a2, a1);
        const __m256d hi = _mm256_add_pd(r, w);
        const __m256d r2 = _mm256_mul_pd(r, r);
        const __m256d lo = _mm256_fmadd_pd(kd, ln2lo, _mm256_add_pd(_mm256_sub_pd(w, hi), r));
        const __m256d r3 = _mm256_mul_pd(r, r2);
        const __m256d p34 = _mm256_fmadd_pd(r, a4, a3);
        const __m256d lo2 = _mm256_fmadd_pd(r2, a0, lo);
        const __m256d p = _mm256_fmadd_pd(p34, r2, p12);
        _mm256_storeu_pd(y + j, _mm256_add_pd(_mm256_fmadd_pd(r3, p, lo2), hi));
        if (main != 0xf) {
            for (int b = 0; b < 4; ++b)
                if (!(main >> b & 1))
                    y[j + b] = std::log(x[j + b]);
        }
    }
    for (; j < n; ++j)
        y[j] = std::log(x[j]);
}

// Every table entry at both ends and the middle of its subinterval, for
// exponents around 1 and far from it, and the edges of the ranges the
// library treats apart.
bool matchesLibrary()
{
    constexpr int Count = 128 * 3 * 6 + 16;
    double x[Count];
    int n = 0;
    for (const int k : {-1000, -3, 0, 1, 4, 1000})
        for (std::uint64_t i = 0; i < 128; ++i)
            for (const std::uint64_t at : {std::uint64_t(0), std::uint64_t(1) << 44, (std::uint64_t(1) << 45) - 1}) {
                const std::uint64_t bits = 0x3fe6000000000000ULL + (i << 45) + at;
                x[n++] = std::ldexp(asDouble(bits), k);
            }
    for (const std::uint64_t edge : {0x3fee000000000000ULL, 0x3ff1090000000000ULL})
        for (const std::uint64_t step : {std::uint64_t(1), std::uint64_t(1) << 24, std::uint64_t(1) << 44}) {
            x[n++] = asDouble(edge - step);
            x[n++] = asDouble(edge + step - 1);
        }
    for (const std::uint64_t bits : {0x0010000000000000ULL, 0x000fffffffffffffULL, 0x7fefffffffffffffULL,
                                     0x3ff0000000000000ULL})
        x[n++] = asDouble(bits);
    double y[Count];
    fourAtATime(x, y, n);
    for (int i = 0; i < n; ++i) {
        const double l = std::log(x[i]);
        if (std::memcmp(&l, &y[i], sizeof l) != 0)
            return false;
    }
    return true;
}

bool vectorised()
{
    static const bool on = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") && matchesLibrary();
    return on;
}

#else

bool vectorised()
{
    return false;
}

#endif

} // namespace

bool logarithmsVectorised()
{
    return vectorised();
}

void logarithms(const double *x, double *y, int n)
{
#ifdef TESSARELLE_VECTOR_LOG
    if (vectorised()) {
        fourAtATime(x, y, n);
        return;
    }
#endif
    for (int i = 0; i < n; ++i)
        y[i] = std::log(x[i]);
}
