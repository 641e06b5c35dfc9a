// The transform of 256 complex numbers itself, see Kernels.h. Kernels.cpp includes this once for each kind of
// machine, in a namespace of its own. As 16 by 16 numbers: transforms down the columns, eight columns side by
// side; a turn of each number; the rows become columns; again (W. M. Gentleman, G. Sande, "Fast Fourier
// Transforms: for fun and profit", 1966).

constexpr std::size_t Side = 16;
constexpr std::size_t Columns = 8;

using Eight = float __attribute__((vector_size(Columns * sizeof(float))));

struct Rows {
  Eight re[Side], im[Side];
};

void LoadRows(Rows& rows, const float* re, const float* im) {
  for (std::size_t i = 0; i < Side; ++i) {
    std::memcpy(&rows.re[i], re + i * Side, sizeof(Eight));
    std::memcpy(&rows.im[i], im + i * Side, sizeof(Eight));
  }
}

// The transform of the rows a, a + step, a + 2 step and a + 3 step, in place.
inline __attribute__((always_inline)) void TransformFour(Rows& rows, std::size_t a, std::size_t step) {
  Eight *const re = rows.re + a, *const im = rows.im + a;
  const Eight sumRe = re[0] + re[2 * step], sumIm = im[0] + im[2 * step];
  const Eight diffRe = re[0] - re[2 * step], diffIm = im[0] - im[2 * step];
  const Eight oddSumRe = re[step] + re[3 * step], oddSumIm = im[step] + im[3 * step];
  const Eight oddDiffRe = re[step] - re[3 * step], oddDiffIm = im[step] - im[3 * step];
  re[0] = sumRe + oddSumRe, im[0] = sumIm + oddSumIm;
  re[step] = diffRe + oddDiffIm, im[step] = diffIm - oddDiffRe;
  re[2 * step] = sumRe - oddSumRe, im[2 * step] = sumIm - oddSumIm;
  re[3 * step] = diffRe - oddDiffIm, im[3 * step] = diffIm + oddDiffRe;
}

// Row i is turned by e^(-2 pi j k / 16).
inline __attribute__((always_inline)) void TurnRow(Rows& rows, std::size_t i, float cosine, float sine) {
  const Eight turned = rows.re[i] * cosine + rows.im[i] * sine;
  rows.im[i] = rows.im[i] * cosine - rows.re[i] * sine;
  rows.re[i] = turned;
}

// Down each column. Row 4 r + s is then line r + 4 s of the transform.
void TransformColumns(Rows& rows) {
  constexpr float c1 = 0.92387953251128674F, s1 = 0.38268343236508977F, c2 = 0.70710678118654752F;
  for (std::size_t q = 0; q < 4; ++q) TransformFour(rows, q, 4);
  TurnRow(rows, 5, c1, s1);
  TurnRow(rows, 6, c2, c2);
  TurnRow(rows, 7, s1, c1);
  TurnRow(rows, 9, c2, c2);
  TurnRow(rows, 10, 0.0F, 1.0F);
  TurnRow(rows, 11, -c2, c2);
  TurnRow(rows, 13, s1, c1);
  TurnRow(rows, 14, -c2, c2);
  TurnRow(rows, 15, -c1, -s1);
  for (std::size_t r = 0; r < 4; ++r) TransformFour(rows, 4 * r, 1);
}

// Calls with the row and the place for each line.
inline __attribute__((always_inline)) void ForLines(const auto& call) {
  for (std::size_t line = 0; line < Side; ++line) call(4 * (line % 4) + line / 4, line * Side);
}

void StoreLines(const Rows& rows, float* re, float* im) {
  ForLines([&](std::size_t row, std::size_t place) {
    std::memcpy(re + place, &rows.re[row], sizeof(Eight));
    std::memcpy(im + place, &rows.im[row], sizeof(Eight));
  });
}

// Each number turned by that of the table.
void StoreTurned(const Rows& rows, const float* turnRe, const float* turnIm, float* re, float* im) {
  ForLines([&](std::size_t row, std::size_t place) {
    Eight cosine, sine;
    std::memcpy(&cosine, turnRe + place, sizeof cosine);
    std::memcpy(&sine, turnIm + place, sizeof sine);
    const Eight turnedRe = rows.re[row] * cosine - rows.im[row] * sine;
    const Eight turnedIm = rows.re[row] * sine + rows.im[row] * cosine;
    std::memcpy(re + place, &turnedRe, sizeof turnedRe);
    std::memcpy(im + place, &turnedIm, sizeof turnedIm);
  });
}

// Eight rows become eight columns: halves, quarters and single numbers change places (J. O. Eklundh 1972).
void TurnAround(const float* from, float* to) {
  Eight a[Columns], b[Columns];
  for (std::size_t i = 0; i < Columns; ++i) std::memcpy(&a[i], from + i * Side, sizeof(Eight));
  for (std::size_t i = 0; i < 4; ++i) {
    b[i] = __builtin_shufflevector(a[i], a[i + 4], 0, 1, 2, 3, 8, 9, 10, 11);
    b[i + 4] = __builtin_shufflevector(a[i], a[i + 4], 4, 5, 6, 7, 12, 13, 14, 15);
  }
  for (std::size_t i = 0; i < Columns; i += 4) {
    for (std::size_t j = i; j < i + 2; ++j) {
      a[j] = __builtin_shufflevector(b[j], b[j + 2], 0, 1, 8, 9, 4, 5, 12, 13);
      a[j + 2] = __builtin_shufflevector(b[j], b[j + 2], 2, 3, 10, 11, 6, 7, 14, 15);
    }
  }
  for (std::size_t i = 0; i < Columns; i += 2) {
    b[i] = __builtin_shufflevector(a[i], a[i + 1], 0, 8, 2, 10, 4, 12, 6, 14);
    b[i + 1] = __builtin_shufflevector(a[i], a[i + 1], 1, 9, 3, 11, 5, 13, 7, 15);
  }
  for (std::size_t i = 0; i < Columns; ++i) std::memcpy(to + i * Side, &b[i], sizeof(Eight));
}

void TurnAroundAll(const float* from, float* to) {
  for (std::size_t row = 0; row < Side; row += Columns) {
    for (std::size_t column = 0; column < Side; column += Columns) {
      TurnAround(from + row * Side + column, to + column * Side + row);
    }
  }
}

void Transform(const Turns& turns, Points& re, Points& im) {
  Points columnsRe, columnsIm;
  Rows rows;
  for (std::size_t at = 0; at < Side; at += Columns) {
    LoadRows(rows, &re[at], &im[at]);
    TransformColumns(rows);
    StoreTurned(rows, &turns.re[at], &turns.im[at], &columnsRe[at], &columnsIm[at]);
  }
  TurnAroundAll(columnsRe.data(), re.data());
  TurnAroundAll(columnsIm.data(), im.data());
  for (std::size_t at = 0; at < Side; at += Columns) {
    LoadRows(rows, &re[at], &im[at]);
    TransformColumns(rows);
    StoreLines(rows, &re[at], &im[at]);
  }
}

// (a - j b) t, number by number.
void Wind(const float* a, const float* b, const Turns& t, Points& re, Points& im) {
  for (std::size_t i = 0; i < TransformPoints; ++i) {
    re[i] = a[i] * t.re[i] + b[i] * t.im[i];
    im[i] = a[i] * t.im[i] - b[i] * t.re[i];
  }
}

// The imaginary part of (re + j im) / t with its sign turned, scaled.
void Unwind(const Points& re, const Points& im, const Turns& t, float scale, float* out) {
  for (std::size_t i = 0; i < TransformPoints; ++i) out[i] = scale * (re[i] * t.im[i] - im[i] * t.re[i]);
}
