#include "images/Absorption.h"
#include "images/AbsorptionInput.h"
#include "images/CrossSection.h"
#include "images/TiffData.h"
#include "spectrum/Spectrum.h"

#include <QtTest>

#include <cstring>
#include <memory>
#include <vector>

// The pointer's kept sums against sums taken afresh: a walk of small moves,
// jumps, edges, box changes and frames changed under the pointer, each step
// compared bit for bit with the stateless spectrum and sections.
class TestPointerSums : public QObject
{
    Q_OBJECT
private slots:
    void walk_data();
    void walk();
};

namespace {

// Pixels from a fixed hash, spread over the type's range.
TiffData *makeFrame(int type, int w, int h, int seed, double energy)
{
    auto *f = new TiffData;
    f->allocate(quint32(w), quint32(h), type);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const quint32 r = quint32(x * 73856093u) ^ quint32(y * 19349663u) ^ quint32(seed * 83492791u);
            double v = double(r % 65536u);
            if (type == PixelI16)
                v -= 32768;
            else if (type == PixelU32)
                v = double(r) * 7.0;
            else if (type == PixelF32)
                v = v / 3.0 + 0.1;
            f->setPixel(x, y, v);
        }
    f->energy = energy;
    return f;
}

bool sameBits(const Spectrum &a, const Spectrum &b)
{
    return a.points.size() == b.points.size()
           && (a.points.isEmpty()
               || std::memcmp(a.points.constData(), b.points.constData(), sizeof(QPointF) * a.points.size()) == 0);
}

} // namespace

void TestPointerSums::walk_data()
{
    QTest::addColumn<QVector<int>>("types"); // I1 frames, then I0 frames after a 0
    QTest::addColumn<bool>("fluo");
    QTest::newRow("u16 with I0 stack") << QVector<int>{PixelU16, PixelU16, PixelU16, 0, PixelU16, PixelU16} << false;
    QTest::newRow("mixed types, one I0 frame")
        << QVector<int>{PixelI16, PixelF32, PixelU32, PixelU8, 0, PixelU16} << false;
    QTest::newRow("fluorescence, no I0") << QVector<int>{PixelU16, PixelI32} << true;
}

void TestPointerSums::walk()
{
    QFETCH(QVector<int>, types);
    QFETCH(bool, fluo);
    const int w = 37;
    const int h = 23;
    std::vector<std::unique_ptr<TiffData>> owned;
    QVector<TiffData *> i1;
    QVector<TiffData *> i0;
    bool inI0 = false;
    for (int t : types) {
        if (t == 0) {
            inI0 = true;
            continue;
        }
        QVector<TiffData *> &stack = inI0 ? i0 : i1;
        owned.emplace_back(makeFrame(t, w, h, int(owned.size()), 100.0 + 10.0 * stack.size()));
        stack << owned.back().get();
    }
    i1[0]->shiftX = 2; // frames aligned by shifts are read shifted
    i1[0]->shiftY = -1;
    AbsorptionInput in;
    in.i1Frames = &i1;
    in.i0Frames = &i0;
    in.useI0 = !i0.isEmpty();
    in.fluoType = fluo;

    // Steps: x y hw vw, or a change before the step: -1 frame x y (a pixel
    // set), -2 frame dx dy (a shift).
    const QVector<QVector<int>> steps{
        {10, 10, 5, 4}, {11, 10, 5, 4},  {11, 11, 5, 4},  {12, 12, 5, 4},  {10, 13, 5, 4},  {13, 10, 5, 4},
        {13, 10, 5, 4}, {30, 20, 5, 4},  {0, 0, 5, 4},    {1, 0, 5, 4},    {36, 22, 5, 4},  {35, 22, 5, 4},
        {-1, 5, 5, 4},  {35, 21, 5, 4},  {35, 21, 6, 4},  {34, 21, -6, 4}, {34, 20, -6, -4}, {-1, 1, 34, 20},
        {34, 20, -6, -4}, {-2, 2, 1, 0}, {33, 20, -6, -4}, {-1, 0, 5, 5},  {33, 21, 6, 4},  {5, 5, 0, 0},
        {6, 5, 0, 0},   {6, 6, 40, 30},  {7, 6, 40, 30}};
    Absorption::KeptSums kept;
    // One pair of sections per kind, as the window keeps them.
    CrossSection rows[2] = {CrossSection(true), CrossSection(true)};
    CrossSection cols[2] = {CrossSection(false), CrossSection(false)};
    Spectrum got, want, raw, wantRaw, section, wantSection;
    for (const QVector<int> &s : steps) {
        if (s[0] == -1) {
            TiffData *f = owned[size_t(s[1]) % owned.size()].get();
            f->setPixel(s[2], s[3], f->pixel(s[2], s[3]) + 1000);
            continue;
        }
        if (s[0] == -2) {
            i1[s[1] % i1.size()]->shiftX += s[2];
            i1[s[1] % i1.size()]->shiftY += s[3];
            continue;
        }
        const QByteArray at = QStringLiteral("at %1 %2, box %3 %4").arg(s[0]).arg(s[1]).arg(s[2]).arg(s[3]).toLatin1();
        Absorption::absorptionSpectrum(in, s[0], s[1], s[2], s[3], got, &raw, &kept);
        Absorption::absorptionSpectrum(in, s[0], s[1], s[2], s[3], want);
        Absorption::rawSpectrum(in, s[0], s[1], s[2], s[3], wantRaw);
        QVERIFY2(sameBits(got, want) && got.size() == i1.size(), at.constData());
        QVERIFY2(sameBits(raw, wantRaw), at.constData());
        for (int k = 0; k < i1.size(); ++k)
            QVERIFY2(raw.points[k].y() == i1[k]->boxSum(s[0], s[1], s[2], s[3]), at.constData());
        for (const bool asMu : {false, true}) {
            rows[asMu].take(in, 1, false, s[1], s[2], s[3], asMu, section);
            Absorption::horizontalSection(in, 1, false, s[1], s[2], s[3], asMu, wantSection);
            QVERIFY2(sameBits(section, wantSection) && section.size() == w, at.constData());
            cols[asMu].take(in, 0, false, s[0], s[2], s[3], asMu, section);
            Absorption::verticalSection(in, 0, false, s[0], s[2], s[3], asMu, wantSection);
            QVERIFY2(sameBits(section, wantSection) && section.size() == h, at.constData());
        }
    }
}

QTEST_GUILESS_MAIN(TestPointerSums)
#include "tst_pointersums.moc"
