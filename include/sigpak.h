/* sigpak: digital signal processing on sampled vectors, in double and single precision.

   This header is the whole interface and its reference manual. A signal is a small record that the caller
   owns: the spacing between samples, the samples, how many there are, and whether they are complex. Some 165
   operations work on it, each in two precisions.

       dsp_vec v;
       dsp_init(&v);
       v.points = 1024;
       v.delta = 1.0 / 48000.0;
       if (dsp_alloc(&v) != 0) return -1;
       ... fill v.data[0 .. 1023] ...
       dspi_window(&v, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE);
       dspi_fft(&v, 0);
       dspi_magsq(&v);
       dsp_destroy(&v);

   Conventions, said once; the functions below state only what differs.

   Twins        Every operation exists for dsp_vec (prefix dsp) and for dspf_vec (prefix dspf). The twins
                behave alike and differ in the scalar type and in H. File operations add f after the
                precision: dspf_fread fills a dsp_vec, dspff_fread a dspf_vec.
   Families     dspi_ in place, dspb_ two operands, dspbs_ two operands to one number, dspc_ generate, dspd_
                filter to another length, dsph_ with history, dsps_ statistic or search, dspu_ one record into
                another; dsp_ without a letter is the core.
   Status       0 on success, -1 on failure. A refused argument leaves every record as it was. A record that
                cannot grow is left without storage (data null, alloc 0), with the points and complex that it
                was to have. There are no messages and no error state. Null record pointers are not tested
                for.
   Empty        points is read as signed: a negative count means no points. Operations accept empty records,
                and one that a result leaves empty has the complex and the delta that points would have had.
                Sizing reads points as it stands, so that a negative count fails, and its storage is lost, in
                dsp_alloc and dsp_realloc, where points are preset (dspc_), where real turns complex
                (dspi_rtoc and such), and as the input of dspd_fir and dspd_hwfilt. Where points must agree,
                it does not agree with 0.
   Results      Operations size their results themselves. The result of a statistic is a record of one point.
   Aliasing     A result may be one of the operands. A history or a state is a record of its own.
   Complex      Complex samples are interleaved: re, im, re, im. A polar record is a complex record that holds
                (magnitude, phase); nothing marks it.
   H            The huge value that stands for infinity: 1e100, in single precision 1e15. Division by zero
                gives H, 0/0 gives 0. T is the smallest normal number, the floor of logarithms. Comparisons
                with the guards are strict, and NaN passes through them.
   delta        The spacing of samples, a time or a frequency step in the unit that the caller chooses. Kept
                unless an operation says otherwise. Transforms turn it into 1 / (points * delta), H when delta
                is 0.
   Frequency    Generators: cycles per unit of delta. FIR design: cycles per sample, 0.5 is the Nyquist
                frequency.
   Ownership    The caller owns the record. With alloc > 0 the library owns data and grows it to the exact
                need, never shrinking it before dsp_destroy. With alloc <= 0 and data set, data is lent by the
                caller: read, never freed, and of capacity 0 wherever a result is sized. Every such result, of
                whatever length, ends in storage of the library's own and leaves the lent buffer as it was:
                generators, results of dspb_, dspu_, dsps_, dspd_ and dsph_, in place too (dspb_mul(v, v, v)),
                dspi_zero, windows, lists of roots, and what grows or turns complex. Written through lent
                storage, where the points change their values or places only: element-wise mathematics,
                complex to real, order, dspi_unzpad, differences and integral, dspi_edge, dspi_hwfilt and
                dspd_hwfilt in place, dspu_subvec and dspd_deci in place, dspi_bitrev, dspi_dct, transforms of
                complex records to as many complex points, and the states and histories of filters that are
                long enough. dspi_analytic of a complex record does both.
   Concurrency  Operations on different records may run at the same time in any number of threads, in both
                precisions, with caches warm or cold. There are no locks and no thread-local state: nothing
                waits, and the bits are those of one thread, but for taps and widths of windows that differ by
                so little that they share a table. Forbidden while an operation runs: to change hooks, to call
                dsp_free_internal, and to use a record that it changes. Hooks are called by the threads of the
                operations. One stream for the whole process, which calls at the same time share as it happens:
                the random source, and the state of dspd_hwfilt where none is given.
   Allocation   Transforms, windows and filters allocate nothing once their tables are there, if the records are
                large enough; other threads at the same operation have theirs made once each. Tables of powers
                of two stay, those of other lengths, filters and windows make way for others. docs/allocation.md
                counts.
   Sizes        A need above 2^31 - 1 scalars is a failed allocation. */
#ifndef SIGPAK_H
#define SIGPAK_H

#include <stdint.h>
#include <stdio.h>

#if defined(__GNUC__)
#define SIGPAK_API __attribute__((visibility("default")))
#else
#define SIGPAK_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The version of the interface, as dsp_version returns it. */
#define DSP_VERSION 201

/* <complex.h> makes complex a macro, which would turn the field of that name into none at all. */
#pragma push_macro("complex")
#undef complex

/* ---- Records ---------------------------------------------------------------------------------------------- */

typedef struct dsp_vec {
  double delta;      /* spacing between samples */
  double *data;      /* points scalars, or points pairs when complex */
  int32_t alloc;     /* capacity of data in scalars; 0 or less when data is not the library's */
  uint32_t points;   /* number of points; a complex point counts once */
  int32_t complex;   /* 0 real, anything else complex */
  uint32_t reserved; /* never read by the library */
} dsp_vec;

typedef struct dspf_vec {
  float delta;       /* spacing */
  float *data;       /* samples */
  int32_t alloc;     /* capacity */
  uint32_t points;   /* length */
  int32_t complex;   /* form */
  uint32_t reserved; /* ignored */
} dspf_vec;

#pragma pop_macro("complex")

/* ---- Windows: the catalogue -------------------------------------------------------------------------------- */

/* Names on one line are one window. In a P name the first digit is the number of cosine terms less one. */
enum {
  DSP_WINDOW_UNIFORM = 0, DSP_WINDOW_RECTANGULAR = 0, DSP_WINDOW_NONE = 0, DSP_WINDOW_P000 = 0,
  DSP_WINDOW_BARTLETT = 1, DSP_WINDOW_TRIANGULAR = 1,
  DSP_WINDOW_HANN = 2, DSP_WINDOW_P110 = 2,
  DSP_WINDOW_HAMMING = 3, DSP_WINDOW_P100 = 3,
  DSP_WINDOW_BLACKMAN = 4,
  DSP_WINDOW_BLACKMAN_HARRIS3 = 5, DSP_WINDOW_P200 = 5,
  DSP_WINDOW_BLACKMAN_HARRIS4 = 6, DSP_WINDOW_P310 = 6, DSP_WINDOW_LOWLEAK = 6,
  DSP_WINDOW_GAUSSTOP = 7, DSP_WINDOW_P400 = 7,
  DSP_WINDOW_FLAT4 = 8, DSP_WINDOW_P301 = 8,
  DSP_WINDOW_FLATTOP = 9, DSP_WINDOW_FLAT5 = 9, DSP_WINDOW_P401 = 9,
  DSP_WINDOW_FLAT6 = 10, DSP_WINDOW_P511 = 10,
  DSP_WINDOW_FLAT7 = 11, DSP_WINDOW_P611 = 11,
  DSP_WINDOW_P501 = 12,
  DSP_WINDOW_P601 = 13,
  DSP_WINDOW_KAISER70 = 14,
  DSP_WINDOW_KAISER80 = 15,
  DSP_WINDOW_KAISER90 = 16,
  DSP_WINDOW_KAISER100 = 17,
  DSP_WINDOW_KAISER110 = 18,
  DSP_WINDOW_KAISER120 = 19,
  DSP_WINDOW_GAUSS60 = 20,
  DSP_WINDOW_GAUSS70 = 21,
  DSP_WINDOW_GAUSS80 = 22,
  DSP_WINDOW_RIEMANN = 23, DSP_WINDOW_SINC_LOBE = 23
};

/* The flags word of every window operation: one normalisation, and any of the rest. */
enum {
  DSP_WINDOW_FLAG_MEAN = 0,       /* mean of the window 1: amplitudes of lines stay */
  DSP_WINDOW_FLAG_RMS = 1,        /* mean square of the window 1: powers of noise stay */
  DSP_WINDOW_FLAG_PEAK = 2,       /* not normalised: 1 in the middle */
  DSP_WINDOW_FLAG_SYMMETRIC = 4,  /* symmetric form, for Kaiser and Gaussian windows */
  DSP_WINDOW_FLAG_WIDTH = 8,      /* a width in samples is given */
  DSP_WINDOW_FLAG_ROTATE = 16,    /* rotate the data by half its length after a uniform window */
  DSP_WINDOW_FLAG_NO_ROTATE = 32  /* do not rotate the data after any other window */
};

/* ---- Names for kinds, modes and flags ------------------------------------------------------------------------ */

/* The kinds of dspc_fir. */
enum {
  DSP_FIR_BAND_PASS = 0, DSP_FIR_BAND_STOP = 1, DSP_FIR_HIGH_PASS = 2, DSP_FIR_LOW_PASS = 3,
  DSP_FIR_COSINE_SUM = 4, DSP_FIR_DELAYED = 5, DSP_FIR_DIFFERENTIATOR = 6, DSP_FIR_GAUSSIAN = 7,
  DSP_FIR_HILBERT = 8, DSP_FIR_KAISER = 9, DSP_FIR_RAMP = 10
};

/* The distributions of dspc_rand. */
enum { DSP_RAND_UNIFORM = 0, DSP_RAND_NORMAL = 1, DSP_RAND_EXPONENTIAL = 2, DSP_RAND_LAPLACE = 3 };

/* The flags of dspi_zpad2 and dspi_unzpad: one scale and one placement. */
enum {
  DSP_PAD_RATIO = 0,       /* times the ratio of the lengths */
  DSP_PAD_ROOT = 1,        /* times its square root */
  DSP_PAD_UNSCALED = 2,
  DSP_PAD_START = 0x000,   /* the points at the start */
  DSP_PAD_CENTRE = 0x100,
  DSP_PAD_END = 0x200,
  DSP_PAD_SPLIT = 0x300    /* half of them at either end, as a spectrum needs it */
};

/* The flags of dspi_edge. */
enum { DSP_EDGE_RISING = 1, DSP_EDGE_FALLING = 2, DSP_EDGE_BOTH = 3 };

/* The flags of dsps_peak: one interpolation, and any of the rest. */
enum {
  DSP_PEAK_SAMPLE = 0x0000,            /* no interpolation */
  DSP_PEAK_PARABOLA = 0x0100,
  DSP_PEAK_LOG_RATIO = 0x0200,
  DSP_PEAK_SHAPED_LOG_RATIO = 0x0300,
  DSP_PEAK_AT_INDEX = 0x1000,          /* at the index given, without a search */
  DSP_PEAK_MINIMUM = 0x2000            /* search for the minimum */
};

/* The flags of dspi_dct. */
enum { DSP_DCT_FORWARD = 0, DSP_DCT_INVERSE = 1 };

/* The flags of dsph_avg: one mode, and any of the rest. */
enum {
  DSP_AVG_REPLACE = 0, DSP_AVG_MEAN = 1, DSP_AVG_MAXIMUM = 2, DSP_AVG_MINIMUM = 3,
  DSP_AVG_HARMONIC = 4, DSP_AVG_GEOMETRIC = 5, DSP_AVG_DECIMATE = 6,
  DSP_AVG_EXPONENTIAL = 16,            /* the weight settles at 1/maxcount */
  DSP_AVG_SQUARED = 32                 /* of squared magnitudes */
};

/* The flags of dspf_fwrite2: one form, and either of the rest. */
enum {
  DSP_WRITE_BINARY = 0, DSP_WRITE_ASCII = 1, DSP_WRITE_SUMMARY = 2,
  DSP_WRITE_NO_HEADER = 0x100, DSP_WRITE_HEADER_ONLY = 0x200
};

/* ---- Core: storage of a record ----------------------------------------------------------------------------- */

/* delta 1, everything else zero. Frees nothing: for a fresh record, or one that owns no storage. Always 0. */
SIGPAK_API int32_t dsp_init (dsp_vec  *v);
SIGPAK_API int32_t dspf_init(dspf_vec *v);

/* Releases storage that the library owns and leaves the record as dsp_init does. Always 0. */
SIGPAK_API int32_t dsp_destroy (dsp_vec  *v);
SIGPAK_API int32_t dspf_destroy(dspf_vec *v);

/* Makes the capacity at least what points and complex ask for; contents are kept only when it already was.
   On failure -1, alloc 0 and data null; points and complex stay as set. A lent buffer is replaced, not
   freed. From 1 KiB on data begins at a multiple of 64 bytes, which transforms are fastest on. */
SIGPAK_API int32_t dsp_alloc (dsp_vec  *v);
SIGPAK_API int32_t dspf_alloc(dspf_vec *v);

/* As dsp_alloc, keeping the contents. Set the new points and complex first and pass the old ones: they tell
   how much to copy out of lent storage. On failure as dsp_alloc, the old contents are released. */
SIGPAK_API int32_t dsp_realloc (dsp_vec  *v, uint32_t old_points, int32_t old_complex);
SIGPAK_API int32_t dspf_realloc(dspf_vec *v, uint32_t old_points, int32_t old_complex);

/* dst = dst followed by src. dst turns complex when src is, and keeps its delta; a real src appended to a
   complex dst gets zero imaginary parts.
   src  another record than dst, with its own storage; the same record is refused */
SIGPAK_API int32_t dsp_append (dsp_vec  *dst, const dsp_vec  *src);
SIGPAK_API int32_t dspf_append(dspf_vec *dst, const dspf_vec *src);

/* dst = src, with its delta; the word reserved of dst stays. A record copied onto itself does not change; a
   dst that src lends its storage leaves it behind. */
SIGPAK_API int32_t dsp_copy (dsp_vec  *dst, const dsp_vec  *src);
SIGPAK_API int32_t dspf_copy(dspf_vec *dst, const dspf_vec *src);

/* dst = the first count points of src, fewer when src is shorter; a negative count gives an empty record. dst
   may be src, and is otherwise independent of it, as by dsp_copy. */
SIGPAK_API int32_t dsp_copy_at_most (dsp_vec  *dst, const dsp_vec  *src, int32_t count);
SIGPAK_API int32_t dspf_copy_at_most(dspf_vec *dst, const dspf_vec *src, int32_t count);

/* *order = 1, -1 or 0: the sign of the first difference a - b above tolerance, of delta first, then of the
   scalars in order; a real record counts as having zero imaginary parts, and a NaN difference as equal.
   a, b  same points; otherwise -1 and *order is untouched */
SIGPAK_API int32_t dsp_cmp (const dsp_vec  *a, const dsp_vec  *b, double tolerance, int32_t *order);
SIGPAK_API int32_t dspf_cmp(const dspf_vec *a, const dspf_vec *b, float  tolerance, int32_t *order);

/* ---- Core: allocation hooks, caches, version ---------------------------------------------------------------- */

/* Functions that stand in for malloc, realloc and free where records are sized and destroyed. What they
   return is ignored; null data afterwards means failure. The need is points, doubled when complex is set.
   alloc    leaves in data storage for the need, and disposes of storage that the record owned (alloc > 0)
   realloc  leaves in data storage for the need that begins with the old contents: old_points scalars, doubled
            when old_complex is set, as far as they fit. Null data has none: lent storage has been taken out
            before the call, and is copied after it. alloc still counts the scalars of data
   free     releases data; called only when alloc > 0 */
typedef int32_t (*dsp_alloc_hook)(dsp_vec *v);
typedef int32_t (*dspf_alloc_hook)(dspf_vec *v);
typedef int32_t (*dsp_realloc_hook)(dsp_vec *v, uint32_t old_points, int32_t old_complex);
typedef int32_t (*dspf_realloc_hook)(dspf_vec *v, uint32_t old_points, int32_t old_complex);
typedef int32_t (*dsp_free_hook)(dsp_vec *v);
typedef int32_t (*dspf_free_hook)(dspf_vec *v);

/* Installs a hook, null for the heap, and stores the one that it replaces in *previous unless that is null.
   Call dsp_free_internal first: the caches' records are sized through the hooks too. Always 0. */
SIGPAK_API int32_t dsp_lib_alloc (dsp_alloc_hook  hook, dsp_alloc_hook  *previous);
SIGPAK_API int32_t dspf_lib_alloc(dspf_alloc_hook hook, dspf_alloc_hook *previous);
SIGPAK_API int32_t dsp_lib_realloc (dsp_realloc_hook  hook, dsp_realloc_hook  *previous);
SIGPAK_API int32_t dspf_lib_realloc(dspf_realloc_hook hook, dspf_realloc_hook *previous);
SIGPAK_API int32_t dsp_lib_free (dsp_free_hook  hook, dsp_free_hook  *previous);
SIGPAK_API int32_t dspf_lib_free(dspf_free_hook hook, dspf_free_hook *previous);

/* Does nothing; no call is needed before any other. Always 0. */
SIGPAK_API int32_t dsp_lib_init(void);
SIGPAK_API int32_t dspf_lib_init(void);

/* DSP_VERSION of the library that runs. */
SIGPAK_API int32_t dsp_version(void);
SIGPAK_API int32_t dspf_version(void);

/* Releases the scratch caches of one precision: filter spectra, bit-reversal lists, twiddle tables, transforms' plans,
   windows, the room of correlations. They are built anew when needed. For any time between operations. */
SIGPAK_API int32_t dsp_free_internal(void);
SIGPAK_API int32_t dspf_free_internal(void);

/* ---- Element-wise mathematics in place ---------------------------------------------------------------------- */

/* None of these changes points or delta. A real-only function returns -1 for a complex record and leaves it as it
   was. z = a + ib is a complex sample, a "point beyond H" one with |a| or |b| above H. Where no other bound is given,
   results in double precision, each part of a complex one by itself, are within 1 ulp of the exact value.
   Single precision computes in double and rounds once: each part of a complex result is within 0.501 ulp, and real
   results are correctly rounded for every argument, so that they are the same bits on every machine (dspfi_db with
   other factors than 10 and 20: within 0.501 ulp). Beside a bound u = 2^-53, half an ulp of 1. */

/* x = factor * x, every scalar of real and complex records. */
SIGPAK_API int32_t dspi_scale (dsp_vec  *v, double factor);
SIGPAK_API int32_t dspfi_scale(dspf_vec *v, float  factor);

/* x = x + amount; of complex samples the real part alone. */
SIGPAK_API int32_t dspi_offset (dsp_vec  *v, double amount);
SIGPAK_API int32_t dspfi_offset(dspf_vec *v, float  amount);

/* x = (re + i im) * x. A real record becomes complex, unless it is empty; -1 when it cannot grow, and the record is
   then left without storage and flagged complex. In double precision a part of a complex product is a sum of two
   products that may cancel: its error is at most 2 u times the sum of their magnitudes, thus 2 u |z| |re + i im|. */
SIGPAK_API int32_t dspi_cscale (dsp_vec  *v, double re, double im);
SIGPAK_API int32_t dspfi_cscale(dspf_vec *v, float  re, float  im);

/* x = -x, every scalar of real and complex records. */
SIGPAK_API int32_t dspi_neg (dsp_vec  *v);
SIGPAK_API int32_t dspfi_neg(dspf_vec *v);

/* x = |x|. Real only; dspi_mag gives the magnitude of complex samples. */
SIGPAK_API int32_t dspi_abs (dsp_vec  *v);
SIGPAK_API int32_t dspfi_abs(dspf_vec *v);

/* x = x^2; H when |x| > H. Complex: z^2, with a and b limited to [-H, H] first; in double precision the real part
   a^2 - b^2 within 2 u max(a^2, b^2), the imaginary one correctly rounded. */
SIGPAK_API int32_t dspi_square (dsp_vec  *v);
SIGPAK_API int32_t dspfi_square(dspf_vec *v);

/* x = 1 / x; H for 0 of either sign. Complex: (s a, -s b) with s = 1 / (a^2 + b^2), H when that sum is 0, and 1 / H
   for a point beyond H. A complex zero becomes (0, -0). In double precision each part of a complex reciprocal is
   within 4 ulp for |z| in [1e-140, H]; below, a^2 + b^2 loses digits as it underflows. */
SIGPAK_API int32_t dspi_recip (dsp_vec  *v);
SIGPAK_API int32_t dspfi_recip(dspf_vec *v);

/* x = sqrt(x); 0 when x < 0. Complex: the principal root, re >= 0 and im with the sign of b; (0, 0) for a zero of
   either sign. A point beyond H keeps its direction, and its root gets the magnitude sqrt(H). */
SIGPAK_API int32_t dspi_sqrt (dsp_vec  *v);
SIGPAK_API int32_t dspfi_sqrt(dspf_vec *v);

/* x = e^x; H when x > ln H. Complex: (e^a cos b, e^a sin b), e^a limited as for real x. */
SIGPAK_API int32_t dspi_exp (dsp_vec  *v);
SIGPAK_API int32_t dspfi_exp(dspf_vec *v);

/* x = 10^x; H when x > log10 H. A sample below -H stops the pass: it and all that follow stay as they are.
   Complex: (e cos(b ln 10), e sin(b ln 10)) with e = 10^a, limited as for real x above, and -H when a < -H; b ln 10
   is a rounded product, ln 10 the constant of the precision. */
SIGPAK_API int32_t dspi_exp10 (dsp_vec  *v);
SIGPAK_API int32_t dspfi_exp10(dspf_vec *v);

/* x = ln x; ln T when x < T, zero and negative x included. Complex: (ln(a^2 + b^2) / 2, atan2(b, a)); (ln T, 0) when
   a^2 + b^2 < T, and (ln(H) / 2, atan2(b, a)) for a point beyond H, a and b limited to [-H, H]. */
SIGPAK_API int32_t dspi_log (dsp_vec  *v);
SIGPAK_API int32_t dspfi_log(dspf_vec *v);

/* x = log10 x; log10 T when x < T. Complex, a and b limited to [-H, H]: (log10(a^2 + b^2) / 2, log10(e) atan2(b, a)),
   the second within 2 ulp, in single precision with log10(e) rounded first; (log10 T, 0) when a^2 + b^2 < T. */
SIGPAK_API int32_t dspi_log10 (dsp_vec  *v);
SIGPAK_API int32_t dspfi_log10(dspf_vec *v);

/* x = factor * log10 x, rounded once; real and complex limits as for dspi_log10, factor times its results; the angle
   of complex results within 2 ulp. With |factor| > H a rounded log10 is multiplied: within 2 ulp, the angle 3 ulp.
   factor  10 for decibels of powers, 20 of amplitudes, both relative to 1; any number */
SIGPAK_API int32_t dspi_db (dsp_vec  *v, double factor);
SIGPAK_API int32_t dspfi_db(dspf_vec *v, float  factor);

/* Limits every scalar, real and imaginary parts alike, to the interval between a and b; NaN stays.
   mode     ignored
   a, b     the bounds, in either order
   clipped  1 when any scalar was replaced, otherwise 0; may be null */
SIGPAK_API int32_t dspi_limit (dsp_vec  *v, int32_t mode, double a, double b, int32_t *clipped);
SIGPAK_API int32_t dspfi_limit(dspf_vec *v, int32_t mode, float  a, float  b, int32_t *clipped);

/* x = sin x, cos x, tan x, in radians, for every finite x, within 0.8 ulp; the nearest float in single precision.
   Real only. Far angles are reduced after M. H. Payne, R. N. Hanek, SIGNUM Newsletter 18 (1983). */
SIGPAK_API int32_t dspi_sin (dsp_vec  *v);
SIGPAK_API int32_t dspfi_sin(dspf_vec *v);
SIGPAK_API int32_t dspi_cos (dsp_vec  *v);
SIGPAK_API int32_t dspfi_cos(dspf_vec *v);
SIGPAK_API int32_t dspi_tan (dsp_vec  *v);
SIGPAK_API int32_t dspfi_tan(dspf_vec *v);

/* x = sin(x) / x, without the factor pi of the normalised sinc; 1 for 0. Real only. */
SIGPAK_API int32_t dspi_sinc (dsp_vec  *v);
SIGPAK_API int32_t dspfi_sinc(dspf_vec *v);

/* x = arctangent of x, in (-pi/2, pi/2). Real only. */
SIGPAK_API int32_t dspi_atan (dsp_vec  *v);
SIGPAK_API int32_t dspfi_atan(dspf_vec *v);

/* x = arcsine, arccosine of x; 0 when |x| > 1. Real only. */
SIGPAK_API int32_t dspi_asin (dsp_vec  *v);
SIGPAK_API int32_t dspfi_asin(dspf_vec *v);
SIGPAK_API int32_t dspi_acos (dsp_vec  *v);
SIGPAK_API int32_t dspfi_acos(dspf_vec *v);

/* x = sinh x, cosh x; H with the sign of the function when |x| > ln H. Real only. */
SIGPAK_API int32_t dspi_sinh (dsp_vec  *v);
SIGPAK_API int32_t dspfi_sinh(dspf_vec *v);
SIGPAK_API int32_t dspi_cosh (dsp_vec  *v);
SIGPAK_API int32_t dspfi_cosh(dspf_vec *v);

/* x = tanh x. Real only. */
SIGPAK_API int32_t dspi_tanh (dsp_vec  *v);
SIGPAK_API int32_t dspfi_tanh(dspf_vec *v);

/* ---- Special functions in place ----------------------------------------------------------------------------- */

/* All of these are real only: -1 for a complex record. */

/* x = I0(x), the modified Bessel function of the first kind of order 0; H when |x| > 700. A power series up to
   |x| = 20 (34 terms; single precision 16 and 21 terms), the asymptotic series beyond (22 terms; single precision 6);
   Abramowitz and Stegun 9.6.12 and 9.7.1. Relative error below 2e-15, single precision 2e-7. In single precision the
   result overflows to infinity between about 91.9 and 700. */
SIGPAK_API int32_t dspi_besi0 (dsp_vec  *v);
SIGPAK_API int32_t dspfi_besi0(dspf_vec *v);

/* x = J0(x), J1(x), the Bessel functions of the first kind, as the platform's j0 and j1 give them. */
SIGPAK_API int32_t dspi_besj0 (dsp_vec  *v);
SIGPAK_API int32_t dspfi_besj0(dspf_vec *v);
SIGPAK_API int32_t dspi_besj1 (dsp_vec  *v);
SIGPAK_API int32_t dspfi_besj1(dspf_vec *v);

/* x = Y0(x), Y1(x), the Bessel functions of the second kind, as the platform's y0 and y1 give them; 0 when x <= 0. */
SIGPAK_API int32_t dspi_besy0 (dsp_vec  *v);
SIGPAK_API int32_t dspfi_besy0(dspf_vec *v);
SIGPAK_API int32_t dspi_besy1 (dsp_vec  *v);
SIGPAK_API int32_t dspfi_besy1(dspf_vec *v);

/* Not provided: the names are kept, and every call returns -1 without looking at the record. */
SIGPAK_API int32_t dspi_erf (dsp_vec  *v);
SIGPAK_API int32_t dspfi_erf(dspf_vec *v);
SIGPAK_API int32_t dspi_erfc (dsp_vec  *v);
SIGPAK_API int32_t dspfi_erfc(dspf_vec *v);
SIGPAK_API int32_t dspi_gamma (dsp_vec  *v);
SIGPAK_API int32_t dspfi_gamma(dspf_vec *v);
SIGPAK_API int32_t dspi_lgamma (dsp_vec  *v);
SIGPAK_API int32_t dspfi_lgamma(dspf_vec *v);

/* ---- Two records, point by point ---------------------------------------------------------------------------- */

/* Common to this section, unless an operation says otherwise:
   a, b  same points, real or complex; otherwise -1 and out is untouched
   out   sized here: complex when a or b is, delta the mean of theirs. It may be a, b, or both, and may as
         well be another record whose data is that of a or b; storage that overlaps them in any other way is
         not supported. When out must grow, a record that shares data which out owns is left with a stale
         pointer. */

/* out[i] = a[i] + b[i], out[i] = a[i] - b[i]. A real operand contributes to the real part alone.
   a, b  any points, none when negative: the shorter one counts as padded with zeros to the length of the
         longer */
SIGPAK_API int32_t dspb_add (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out);
SIGPAK_API int32_t dspfb_add(const dspf_vec *a, const dspf_vec *b, dspf_vec *out);
SIGPAK_API int32_t dspb_sub (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out);
SIGPAK_API int32_t dspfb_sub(const dspf_vec *a, const dspf_vec *b, dspf_vec *out);

/* out[i] = a[i] * b[i]; a real operand scales both parts of a complex one. */
SIGPAK_API int32_t dspb_mul (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out);
SIGPAK_API int32_t dspfb_mul(const dspf_vec *a, const dspf_vec *b, dspf_vec *out);

/* out[i] = a[i] * conj(b[i]); with b real the same as dspb_mul. */
SIGPAK_API int32_t dspb_conj_mul (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out);
SIGPAK_API int32_t dspfb_conj_mul(const dspf_vec *a, const dspf_vec *b, dspf_vec *out);

/* out[i] = a[i] / b[i]; 0/0 gives 0. Over 0, any other value gives H, whatever its sign, in complex results
   (H, H). Complex / real is a product with 1 / b. Over a complex b, d = re^2 + im^2 decides: with d = 0,
   underflow included, the result is (0, 0) when a and b are zero in every part, otherwise (H, H); else a *
   conj(b) * (1 / d). */
SIGPAK_API int32_t dspb_div (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out);
SIGPAK_API int32_t dspfb_div(const dspf_vec *a, const dspf_vec *b, dspf_vec *out);

/* out[i] = b[i] + weight * (a[i] - b[i]) = weight * a[i] + (1 - weight) * b[i], each part by itself. Weight
   1 copies a and weight 0 copies b, exactly. The missing imaginary part of a real operand enters as a
   product: weight * a.im where b is real, (1 - weight) * b.im where a is. */
SIGPAK_API int32_t dspb_avg_add (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out, double weight);
SIGPAK_API int32_t dspfb_avg_add(const dspf_vec *a, const dspf_vec *b, dspf_vec *out, float  weight);

/* out[i] = the smaller, or the larger, of a[i] and b[i]; b[i] on ties and where a NaN is compared. Complex:
   the whole point of smaller, or larger, squared magnitude, which counts as H when a part lies outside
   [-H, H], less than that of a point of magnitude above sqrt(H) inside; a real operand beside a complex one
   has no imaginary part. */
SIGPAK_API int32_t dspb_min (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out);
SIGPAK_API int32_t dspfb_min(const dspf_vec *a, const dspf_vec *b, dspf_vec *out);
SIGPAK_API int32_t dspb_max (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out);
SIGPAK_API int32_t dspfb_max(const dspf_vec *a, const dspf_vec *b, dspf_vec *out);

/* out[i] = (re[i], im[i]), complex. Sized by dsp_realloc, whatever out is.
   re, im  real, same points; otherwise -1 and out is untouched */
SIGPAK_API int32_t dspb_ritoc (const dsp_vec  *re, const dsp_vec  *im, dsp_vec  *out);
SIGPAK_API int32_t dspfb_ritoc(const dspf_vec *re, const dspf_vec *im, dspf_vec *out);

/* out[2i] = a[i], out[2i + 1] = b[i]. delta is half the mean of theirs. */
SIGPAK_API int32_t dspb_inter (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out);
SIGPAK_API int32_t dspfb_inter(const dspf_vec *a, const dspf_vec *b, dspf_vec *out);

/* out = one point, the sum of a[i] * b[i], without conjugation; complex when a or b is. Summed in blocks of
   2048 points, each from zero in order, then added to the total; single precision multiplies and accumulates
   in double. delta of out stays. With out an operand, its old contents are summed. */
SIGPAK_API int32_t dspbs_dot (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out);
SIGPAK_API int32_t dspfbs_dot(const dspf_vec *a, const dspf_vec *b, dspf_vec *out);

/* out[k] = the sum of a[i] * b[k - i] over i: the product of two polynomials with coefficients a and b, the
   full linear convolution, from zero by rising i, in the precision of the records. a.points + b.points - 1
   points, none when either is empty.
   a, b  any points */
SIGPAK_API int32_t dspb_pmul (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out);
SIGPAK_API int32_t dspfb_pmul(const dspf_vec *a, const dspf_vec *b, dspf_vec *out);

/* ---- Complex forms ------------------------------------------------------------------------------------------- */

/* Magnitudes and phases are within 1 ulp of the exact values, and so are both parts of dspi_rtop and
   dspi_ptor; in single precision within 0.501. */

/* Real to complex, x to (x, 0). A complex record stays; an empty one turns complex too. */
SIGPAK_API int32_t dspi_rtoc (dsp_vec  *v);
SIGPAK_API int32_t dspfi_rtoc(dspf_vec *v);

/* The real part, the imaginary part, of a complex record, which becomes real. A real record is its own real
   part; its imaginary part is 0 in every sample. */
SIGPAK_API int32_t dspi_real (dsp_vec  *v);
SIGPAK_API int32_t dspfi_real(dspf_vec *v);
SIGPAK_API int32_t dspi_imag (dsp_vec  *v);
SIGPAK_API int32_t dspfi_imag(dspf_vec *v);

/* z = conj(z): the imaginary parts change sign. A real record stays. */
SIGPAK_API int32_t dspi_conj (dsp_vec  *v);
SIGPAK_API int32_t dspfi_conj(dspf_vec *v);

/* z = i * z: (re, im) becomes (-im, re). A real record becomes complex, x to (0, x). */
SIGPAK_API int32_t dspi_timesi (dsp_vec  *v);
SIGPAK_API int32_t dspfi_timesi(dspf_vec *v);

/* |z|; a complex record becomes real. Without overflow on the way. */
SIGPAK_API int32_t dspi_mag (dsp_vec  *v);
SIGPAK_API int32_t dspfi_mag(dspf_vec *v);

/* |z|^2 = re^2 + im^2; a complex record becomes real. The square of a part outside [-H, H] counts as H. */
SIGPAK_API int32_t dspi_magsq (dsp_vec  *v);
SIGPAK_API int32_t dspfi_magsq(dspf_vec *v);

/* The phase in radians; a complex record becomes real: atan2(im, re) in [-pi, pi], 0 for the point (0, 0)
   whatever the signs of its zeros. A real record: pi where x < 0, else 0. */
SIGPAK_API int32_t dspi_phase (dsp_vec  *v);
SIGPAK_API int32_t dspfi_phase(dspf_vec *v);

/* Rectangular to polar: z becomes (|z|, phase), as dspi_mag and dspi_phase give them. A real record becomes
   complex. */
SIGPAK_API int32_t dspi_rtop (dsp_vec  *v);
SIGPAK_API int32_t dspfi_rtop(dspf_vec *v);

/* Polar to rectangular: (m, p) becomes (m cos p, m sin p). A real record stays. */
SIGPAK_API int32_t dspi_ptor (dsp_vec  *v);
SIGPAK_API int32_t dspfi_ptor(dspf_vec *v);

/* Unwraps phases, in radians: every output follows its predecessor by the step to the input reduced into
   [-pi, pi], a step of exactly pi as it is. The predecessor of the first is 0, so the first output is the
   first input reduced too.
   v  real; otherwise -1 */
SIGPAK_API int32_t dspi_unwrap (dsp_vec  *v);
SIGPAK_API int32_t dspfi_unwrap(dspf_vec *v);

/* out = |in|, out = |in|^2: as dspi_mag and dspi_magsq, into a second record, which is real, may be in, and
   takes its delta. */
SIGPAK_API int32_t dspu_mag (const dsp_vec  *in, dsp_vec  *out);
SIGPAK_API int32_t dspfu_mag(const dspf_vec *in, dspf_vec *out);
SIGPAK_API int32_t dspu_magsq (const dsp_vec  *in, dsp_vec  *out);
SIGPAK_API int32_t dspfu_magsq(const dspf_vec *in, dspf_vec *out);

/* out = the square root of in, which out may be, with its delta. Real: 0 for negative values. Complex: the
   principal root; the magnitude counts as H when a part lies outside [-H, H]. */
SIGPAK_API int32_t dspu_sqrt (const dsp_vec  *in, dsp_vec  *out);
SIGPAK_API int32_t dspfu_sqrt(const dspf_vec *in, dspf_vec *out);

/* out = the count points of in from point start, with its delta and form; out may be in. A negative count
   counts as 0; start is limited to [0, points of in], and count to what follows it. */
SIGPAK_API int32_t dspu_subvec (const dsp_vec  *in, dsp_vec  *out, int32_t start, int32_t count);
SIGPAK_API int32_t dspfu_subvec(const dspf_vec *in, dspf_vec *out, int32_t start, int32_t count);

/* ---- Generators ---------------------------------------------------------------------------------------------- */

/* x[n] = cos(2 pi f delta n + phase), for the points preset in v.
   f      cycles per unit of delta
   phase  radians
   A complex record gets zero imaginary parts. By rotation from a fresh angle at every 256th point, in double
   for both precisions; the error is below 2^-44 + 2^-51 (|2 pi f delta n| + |phase|), plus the rounding to
   single precision. */
SIGPAK_API int32_t dspc_cos (dsp_vec  *v, double f, double phase);
SIGPAK_API int32_t dspfc_cos(dspf_vec *v, float  f, float  phase);

/* z[n] = exp(i (2 pi f delta n + phase)), for the points preset in v; a real record as dspc_cos. */
SIGPAK_API int32_t dspc_cexp (dsp_vec  *v, double f, double phase);
SIGPAK_API int32_t dspfc_cexp(dspf_vec *v, float  f, float  phase);

/* x[0] = start, x[n] = x[n-1] + slope * delta, by repeated addition, for the points preset in v. A complex
   record gets zero imaginary parts. */
SIGPAK_API int32_t dspc_line (dsp_vec  *v, double slope, double start);
SIGPAK_API int32_t dspfc_line(dspf_vec *v, float  slope, float  start);

/* x[n] += amp * cos(2 pi f delta n + phase), to the real parts of a complex record; with mode bit 0 set,
   z[n] += amp * exp(i (2 pi f delta n + phase)) when it is complex. Always 0. */
SIGPAK_API int32_t dspi_addcos (dsp_vec  *v, int32_t mode, double f, double amp, double phase);
SIGPAK_API int32_t dspfi_addcos(dspf_vec *v, int32_t mode, float  f, float  amp, float  phase);

/* ---- Random sequences ---------------------------------------------------------------------------------------- */

/* Fills the points preset in v with random numbers.
   distribution  one of DSP_RAND_*; any other gives -1
                 0  uniform in [-1, 1]; complex: uniform in the open unit disc. The end 1, and the circle, come
                    of rounding alone, in single precision once in some 2^26 draws, in double in 2^54
                 1  normal, mean 0 and variance 1; complex: each part so
                 2  exponential with mean 1; complex: -1
                 3  Laplace with mean 0 and scale 1; complex: -1
   A refusal comes after v has been sized. The source is rand(), seeded from the time before the first draw of
   the process, by this function or dspi_shuffle; call srand after that for a sequence that repeats. Real
   normal numbers are drawn in pairs by the polar method (Marsaglia and Bray, SIAM Review 6, 1964); complex
   ones as Box and Muller (Ann. Math. Stat. 29, 1958). The second of a pair is kept for the next draw, whose
   precision may be the other one, and outlives srand. */
SIGPAK_API int32_t dspc_rand (dsp_vec  *v, int32_t distribution);
SIGPAK_API int32_t dspfc_rand(dspf_vec *v, int32_t distribution);

/* ---- Rearrangement and padding ------------------------------------------------------------------------------- */

/* x[i] = x[points - 1 - i]: reverses the order of the points. Always 0. */
SIGPAK_API int32_t dspi_rev (dsp_vec  *v);
SIGPAK_API int32_t dspfi_rev(dspf_vec *v);

/* x[i] = x[i + n]: drops the first n points. None is left when the record has no more than n. */
SIGPAK_API int32_t dspi_shift (dsp_vec  *v, uint32_t n);
SIGPAK_API int32_t dspfi_shift(dspf_vec *v, uint32_t n);

/* Permutes the points at random (Fisher and Yates), with the source of dspc_rand. Always 0. */
SIGPAK_API int32_t dspi_shuffle (dsp_vec  *v);
SIGPAK_API int32_t dspfi_shuffle(dspf_vec *v);

/* Sorts the points in ascending order. Real points by value, with -0 before +0 and NaN last. Complex points
   by squared magnitude, in which a part outside [-H, H] or NaN counts as H; points of equal magnitude by real
   part, then by imaginary part, where the zeros are equal and NaN come last. Equal points in no particular
   order. Always 0. */
SIGPAK_API int32_t dspi_sort (dsp_vec  *v);
SIGPAK_API int32_t dspfi_sort(dspf_vec *v);

/* Rotates the points right by half their number, rounded down: the zero frequency of a spectrum goes to the
   middle. The inverse of dspi_swap_halves2, and the same for an even number of points. */
SIGPAK_API int32_t dspi_swap_halves (dsp_vec  *v);
SIGPAK_API int32_t dspfi_swap_halves(dspf_vec *v);

/* Rotates the points left by half their number, rounded down: the middle point becomes the first. */
SIGPAK_API int32_t dspi_swap_halves2 (dsp_vec  *v);
SIGPAK_API int32_t dspfi_swap_halves2(dspf_vec *v);

/* Lengthens the record to points by appending zeros; never shortens. -1 when it cannot grow, as in all of
   padding. */
SIGPAK_API int32_t dspi_zpad (dsp_vec  *v, int32_t points);
SIGPAK_API int32_t dspfi_zpad(dspf_vec *v, int32_t points);

/* Every scalar becomes 0; points and complex stay. */
SIGPAK_API int32_t dspi_zero (dsp_vec  *v);
SIGPAK_API int32_t dspfi_zero(dspf_vec *v);

/* x[2i] = x[i], x[2i+1] = 0: inserts a zero after every point. points doubles, delta halves, after a failure
   too. */
SIGPAK_API int32_t dspi_zinter (dsp_vec  *v);
SIGPAK_API int32_t dspfi_zinter(dspf_vec *v);

/* Lengthens the record from N to n points, zeros among them; never shortens.
   flags  DSP_PAD_*: what the old points are multiplied by: 0 n / N, 1 sqrt(n / N), 2 nothing; 3 is refused
          plus where they go: 0x000 to the start; 0x100 to the centre, point N/2 to point n/2, both rounded
          down; 0x200 to the end; 0x300 the first half, rounded up, to the start and the other to the end, as
          the bins of a spectrum need it; any other in 0x700 is refused
   A refusal comes after the growth: the record has n points, those beyond N undefined. */
SIGPAK_API int32_t dspi_zpad2 (dsp_vec  *v, int32_t n, int32_t flags);
SIGPAK_API int32_t dspfi_zpad2(dspf_vec *v, int32_t n, int32_t flags);

/* Shortens the record from N to n points; never lengthens. The inverse of dspi_zpad2 with the same flags.
   With n not below N the flags are not looked at.
   n      a negative one counts as 0
   flags  what the points are multiplied by, as dspi_zpad2, plus which are kept: 0x000 the first; 0x100 those
          around the centre; 0x200 the last; 0x300 the first half, rounded up, and the last */
SIGPAK_API int32_t dspi_unzpad (dsp_vec  *v, int32_t n, int32_t flags);
SIGPAK_API int32_t dspfi_unzpad(dspf_vec *v, int32_t n, int32_t flags);

/* ---- Differences, integral, level crossings ------------------------------------------------------------------ */

/* x[n] = (x[n] - x[n-1]) / delta, as a product with 1 / delta, or with H when delta is 0; x[-1] is 0. Both
   parts of complex points. Always 0. */
SIGPAK_API int32_t dspi_differ (dsp_vec  *v);
SIGPAK_API int32_t dspfi_differ(dspf_vec *v);

/* x[n] = delta * (x[0] + ... + x[n]), added in this order, in double for both precisions; the inverse of
   dspi_differ. Both parts of complex points. Always 0. */
SIGPAK_API int32_t dspi_integ (dsp_vec  *v);
SIGPAK_API int32_t dspfi_integ(dspf_vec *v);

/* x[n] = (n + 1) * x[n+1]: the derivative of the polynomial with the coefficients x, lowest power first.
   points becomes one less. Always 0. */
SIGPAK_API int32_t dspi_pdiffer (dsp_vec  *v);
SIGPAK_API int32_t dspfi_pdiffer(dspf_vec *v);

/* The times at which a real signal crosses a level, interpolated linearly, become the points of v, in order;
   delta becomes 1.
   flags  DSP_EDGE_*: 1 rising crossings, x[n] <= level < x[n+1]; 2 falling ones, x[n] >= level > x[n+1];
          3 both
   A complex record is refused; an empty one stays as it is. */
SIGPAK_API int32_t dspi_edge (dsp_vec  *v, int32_t flags, double level);
SIGPAK_API int32_t dspfi_edge(dspf_vec *v, int32_t flags, float  level);

/* ---- Descriptive statistics ----------------------------------------------------------------------------------- */

/* result = the sum of the samples, complex when v is; 0 for an empty record. Summed in blocks of 2048 points,
   each from zero in the order of the samples, then added to the total; single precision accumulates in
   double. */
SIGPAK_API int32_t dsps_sum (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_sum(const dspf_vec *v, dspf_vec *result);

/* result = (1 / points) * sum, complex when v is; 0 for an empty record. */
SIGPAK_API int32_t dsps_mean (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_mean(const dspf_vec *v, dspf_vec *result);

/* result = the smallest, or largest, sample, complex when v is; 0 for an empty record. Of a complex record
   the point of smallest, or largest, squared magnitude, the first of equals; a point with a component beyond
   H counts as H, less than one of magnitude above sqrt(H) inside. The search starts from H, or -H, and NaN is
   never chosen: a real record without a sample below H, above -H, gives that start, a complex one without a
   squared magnitude below H the minimum (H, H), and one of NaN alone the maximum (0, 0). */
SIGPAK_API int32_t dsps_min (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_min(const dspf_vec *v, dspf_vec *result);
SIGPAK_API int32_t dsps_max (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_max(const dspf_vec *v, dspf_vec *result);

/* result = sum of |x|^2, every component limited to -H .. H before it is squared; blocks as in dsps_sum. */
SIGPAK_API int32_t dsps_magsq_sum (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_magsq_sum(const dspf_vec *v, dspf_vec *result);

/* result = sqrt(magsq_sum / points); 0 for an empty record. */
SIGPAK_API int32_t dsps_rms (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_rms(const dspf_vec *v, dspf_vec *result);

/* result = the population variance, divisor n = points; of a complex record the variances of both parts
   added; 0 for an empty record. With d = x - c the deviations from a centre c = (x[n-1] + x[n/2] + x[0]) / 3,
   each limited to -H .. H: sum(d^2) / n - (sum(d) / n)^2, blocks as in dsps_sum. Rounding may leave a
   variance of nearly 0 slightly negative. Source: Chan, Golub, LeVeque, The American Statistician 37
   (1983). */
SIGPAK_API int32_t dsps_pop_var (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_pop_var(const dspf_vec *v, dspf_vec *result);

/* result = the sample variance, pop_var * n / (n - 1); the population variance below 2 points. */
SIGPAK_API int32_t dsps_samp_var (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_samp_var(const dspf_vec *v, dspf_vec *result);

/* result = the square root of pop_var, of samp_var; NaN when the variance has been rounded below 0. */
SIGPAK_API int32_t dsps_pop_stddev (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_pop_stddev(const dspf_vec *v, dspf_vec *result);
SIGPAK_API int32_t dsps_samp_stddev (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_samp_stddev(const dspf_vec *v, dspf_vec *result);

/* result = the skewness, third central moment / pop_var^(3/2), from deviations as in dsps_pop_var. H when
   only the divisor is 0, 0 when both are, and for an empty record.
   v  real; otherwise -1 */
SIGPAK_API int32_t dsps_skew (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_skew(const dspf_vec *v, dspf_vec *result);

/* result = the excess kurtosis, fourth central moment / pop_var^2 - 3, from deviations from the mean. H when
   only the divisor is 0, -3 when both are, and for an empty record.
   v  real; otherwise -1 */
SIGPAK_API int32_t dsps_excess (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_excess(const dspf_vec *v, dspf_vec *result);

/* result = (x[0] x[1] ... x[n-1])^(1/n), of a complex record the principal root. The product is formed as it
   stands and may leave the range of double. 0 when it is below T, of a complex record when its squared
   magnitude is, and for an empty record. */
SIGPAK_API int32_t dsps_gmean (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_gmean(const dspf_vec *v, dspf_vec *result);

/* result = n / sum(1 / x), blocks as in dsps_sum; 0 when a sample is 0 or the record is empty, H when the
   reciprocals cancel. In a complex record parts are limited to -H .. H, the reciprocal of 0 counts as 0, and
   the result is 0 when the reciprocals cancel. */
SIGPAK_API int32_t dsps_hmean (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_hmean(const dspf_vec *v, dspf_vec *result);

/* result = the middle sample in the order of dspi_sort, the mean of the two middle ones when points is even,
   complex when v is; 0 for an empty record. */
SIGPAK_API int32_t dsps_median (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_median(const dspf_vec *v, dspf_vec *result);

/* ---- Polynomials and roots ------------------------------------------------------------------------------------ */

/* A polynomial is a real record of its coefficients a[0] + a[1] x + a[2] x^2 + ..., the constant term
   first; a complex one is refused. All computation is in double, in single precision too, and the searches for roots
   sum p in twice that precision. A point z of the searches counts as a root when |p(z)| is at most a small multiple (4
   to 16) of n eps sum(|a[k]| |z|^k), n coefficients, eps the spacing of numbers at 1: it is then the exact root of
   coefficients that differ from the given ones by rounding. */

/* result = p(x), real, by Horner's rule from the leading coefficient, which alone is p of any x, infinite or NaN; 0
   for an empty polynomial. */
SIGPAK_API int32_t dsps_peval (const dsp_vec  *p, dsp_vec  *result, double x);
SIGPAK_API int32_t dspfs_peval(const dspf_vec *p, dspf_vec *result, float  x);

/* result = the roots of a polynomial of up to six coefficients: by formula up to degree 2, from degree 3 on as
   dspi_proots finds them, without its last check. Leading coefficients that are exactly 0 do not count; a constant has
   no roots. Real when all roots are; otherwise complex, conjugates side by side, negative imaginary part first. Order:
     degree 2  the smaller real root first
     degree 3  one real root: that, then the pair; three: ascending
     degree 4  ascending when all are real; otherwise the two roots with the smaller sum, two of a pair or two real
               ones, then the other two; of equal sums those with the larger product first
     degree 5  ascending when all are real; otherwise as degree 4 without the real root that dsps_psolve finds from 0,
               and that one before a leading pair, or at its place among two leading real roots
   A root beyond the range of the precision is infinite or 0. Coefficients that are not finite give NaN from degree 3
   on, -1 for degree 5.
   p       more than six coefficients are refused
   result  may be p; its delta is then 1 */
SIGPAK_API int32_t dsps_proots (const dsp_vec  *p, dsp_vec  *result);
SIGPAK_API int32_t dspfs_proots(const dspf_vec *p, dspf_vec *result);

/* result = one real root, searched for from guess by Laguerre's iteration, and by Newton's when that fails, between
   Lagrange's bounds of the real roots; also from the middle of the bounds and from both. -1 when nothing converges to
   a root; result is then the last point.
   result  may be p; its delta is then 1 */
SIGPAK_API int32_t dsps_psolve (const dsp_vec  *p, dsp_vec  *result, double guess);
SIGPAK_API int32_t dspfs_psolve(const dspf_vec *p, dspf_vec *result, float  guess);

/* result = one root, searched for from the point (re, im) by Laguerre's iteration and polished by Newton's; from
   three other points when that fails. It counts as real, with the imaginary part kept in data[1], when a[0] is 0 or
   when |im / re| is below eps n/4 times the ratio of the largest coefficient to the smallest that is not below eps of
   it. -1 and (0, 0) when nothing converges to a root.
   result  may be p; its delta is then 1 */
SIGPAK_API int32_t dsps_pcsolve (const dsp_vec  *p, dsp_vec  *result, double re, double im);
SIGPAK_API int32_t dspfs_pcsolve(const dspf_vec *p, dspf_vec *result, float  re, float  im);

/* The polynomial becomes the list of its roots, complex, as many as its degree, in the order of dspi_sort, with the
   delta 1; empty when its degree is 0. Conjugates are exact. Leading coefficients of 0 do not count. The list is right
   or refused: each point z as stored has |p(z)| <= 16 n eps sum(|a[k]| |z|^k) in the polynomial as given, n
   coefficients, eps of its precision, and the product of all x - z, times the leading coefficient, is p but for
   rounding. Measured on 18000 polynomials of degree 2 to 100 with coefficients spread over 10^-8 ... 10^8: the
   points are within 0.3 n eps, the products within n eps of the hull of the coefficients. Roots of any size that the
   precision holds; multiple roots come as close as their coefficients tell them apart in twice the precision. Roots are
   searched for by Laguerre's iteration in twice the precision, from 0 first, and divided out one after the other (G.
   Peters, J. H. Wilkinson, J. Inst. Maths Applics 8, 1971), a pair of conjugates at a time; once more from all round 0
   when that list is not right, as for some hundred roots on a circle.
   -1 and the record stays when a search does not converge, a coefficient is not finite or a root is out of range. */
SIGPAK_API int32_t dspi_proots (dsp_vec  *v);
SIGPAK_API int32_t dspfi_proots(dspf_vec *v);

/* The list of roots becomes the monic polynomial (x - r[0]) (x - r[1]) ..., one point more; complex when the list
   is. An empty list gives 1. */
SIGPAK_API int32_t dspi_pztoc (dsp_vec  *v);
SIGPAK_API int32_t dspfi_pztoc(dspf_vec *v);

/* Half a spectrum becomes the whole: after the points 0 .. n - 1 come their mirror images, conjugated when the
   record is complex: x[n - 2], x[n - 3], ... x[1], of length 2 (n - 1) in all; nothing is done below 3 points. */
SIGPAK_API int32_t dspi_recon (dsp_vec  *v);
SIGPAK_API int32_t dspfi_recon(dspf_vec *v);

/* With odd = 0 as dspi_recon; otherwise the mirror images start with x[n - 1], of length 2 n - 1 in all, and
   nothing is done below 2 points. */
SIGPAK_API int32_t dspi_orecon (dsp_vec  *v, int32_t odd);
SIGPAK_API int32_t dspfi_orecon(dspf_vec *v, int32_t odd);

/* ---- Peaks, histogram, regression ----------------------------------------------------------------------------- */

/* result = (height, position), real, the position in samples; (0, 0) for an empty record. With y the samples,
   of a complex record the squared magnitudes, and i the place of the extreme:
     none        y[i] at i
     parabola    p = (y[i+1] - y[i-1]) / 2, q = (y[i+1] - 2 y[i] + y[i-1]) / 2: y[i] - p^2 / (4 q) at
                 i - p / (2 q); not interpolated at the ends of the record; a flat parabola divides by zero
     log ratio   over the pair j, j + 1 of i and its larger neighbour: d = 0.79223 ln(y[j+1] / y[j]) + 0.5,
                 y[j] exp(0.31556 d^2) at j + d; needs 2 points; -1 when d had to be limited to -0.5 .. 1.5,
                 the record is written all the same. It takes y for the squared magnitudes of a spectrum under
                 DSP_WINDOW_GAUSSTOP, where positions are right to 0.001, with the shape below to 5e-5; the
                 top of the power is y[j] exp(0.63113 d^2), the square of the height over y[j]
   flags  DSP_PEAK_*: 0x1000 take index, limited to the record; otherwise search for the first maximum, with
          0x2000 for the first minimum, as dsps_max and dsps_min do; index 0 when those find none
          0x0000 no interpolation, 0x0100 parabola, 0x0200 log ratio, 0x0300 log ratio with the first term
          t = 0.79223 ln(...) of d replaced by t (1 - 0.02036 (t^2 - 0.25)); another value of the bits 0x0700
          is refused
   result may be v; its delta is then 1 */
SIGPAK_API int32_t dsps_peak (const dsp_vec  *v, dsp_vec  *result, int32_t flags, int32_t index);
SIGPAK_API int32_t dspfs_peak(const dspf_vec *v, dspf_vec *result, int32_t flags, int32_t index);

/* result[k] = how many samples, of a complex record magnitudes, lie in lo + k width <= x < lo + (k + 1)
   width; real, and its delta is width. The upper edge lo + bins * width belongs to the last bin, within a
   relative tolerance of 10 epsilons; other samples outside, and NaN, are not counted. In single precision a
   count stops at 2^24.
   width  0 counts the samples equal to lo, in bin 0
   bins   the points of the result; negative counts as 0
   result may be v */
SIGPAK_API int32_t dsps_hist (const dsp_vec  *v, dsp_vec  *result, double lo, double width, int32_t bins);
SIGPAK_API int32_t dspfs_hist(const dspf_vec *v, dspf_vec *result, float  lo, float  width, int32_t bins);

/* result = (slope, intercept) of the least-squares line of y on x: the first two numbers of
   dsps_lin_regres2. */
SIGPAK_API int32_t dsps_lin_regres (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_lin_regres(const dspf_vec *v, dspf_vec *result);

/* The straight lines of least squares through n = points pairs (x, y), real, of 20 points. A complex record
   is the list of pairs (re, im); a real one holds y over x = k * delta, with 1 for a delta of 0. With the
   means mx and my, the population variances vx and vy and the covariance c, r = c / sqrt(vx vy) and
   f = n / (n - 2), 0 below n = 3:
      0  slope c / vx of y on x            1  intercept my - slope * mx
      2  residual variance f vy (1 - r^2)  3  variance of the slope, that / (n vx)
      4  variance of the intercept         5  covariance of slope and intercept
      6  their correlation              7-13  the same seven for the line of x on y
     14  mx                               15  my
     16  n / (n - 1) * vx                 17  n / (n - 1) * vy
     18  n / (n - 1) * c                  19  r
   Slope and intercept are H when vx is 0, the variance of the slope then f H; r is 0 when vx or vy is 0, and
   variances are never negative. Deviations from the centre of the data are limited to -H .. H. Below 2 points
   all are 0 but 1 and 15, which are y, and 8 and 14, which are x. Source: Draper, Smith, Applied Regression
   Analysis. */
SIGPAK_API int32_t dsps_lin_regres2 (const dsp_vec  *v, dsp_vec  *result);
SIGPAK_API int32_t dspfs_lin_regres2(const dspf_vec *v, dspf_vec *result);

/* ---- Splines and interpolation ---------------------------------------------------------------------------------- */

enum {
  DSP_SPLINE_NOT_A_KNOT = 0,
  DSP_SPLINE_NATURAL = 1,
  DSP_SPLINE_CLAMPED = 2,
  DSP_SPLINE_PERIODIC = 3,
  DSP_SPLINE_MONOTONE = 4
};

/* spline = the cubic spline through y, complex: pairs (value, slope). Between neighbouring knots h apart, with the
   chord d = (y1 - y0) / h and v = (t - x0) / h:
       y0 + (t - x0) (s0 + v (3 d - 2 s0 - s1 + v (s0 + s1 - 2 d)))
   x       real, as many points as y, finite and strictly rising; or null for 0, delta, 2 delta, ... with delta > 0 and
           finite; otherwise -1
   y       real; otherwise -1. A NaN spreads, with _MONOTONE over its neighbours alone
   ends    _NOT_A_KNOT  one cubic over the first two intervals, and one over the last two: exact for cubics
           _NATURAL     second derivative 0 at both ends
           _CLAMPED     the slopes start and end there
           _PERIODIC    the last point is the first one, a period later; its value is taken from the first
           _MONOTONE    slopes that never overshoot: weighted harmonic means of the neighbouring chords, 0 where those
                        differ in sign (Fritsch and Butland, SIAM J. Sci. Stat. Comput. 5, 1984), three-point slopes at
                        the ends, limited to the shape of the data; once differentiable
           others -1. With 2 points a line, unless _CLAMPED; with 3 _NOT_A_KNOT is the parabola; with 1 a constant
   spline  may be y
   delta of y. Computed in double in both precisions: slopes within 16 u of the largest chord nearby on regular
   knots, u = 2^-53, and rounded once. Other splines through the same knots are pairs with slopes of the caller. */
SIGPAK_API int32_t dsp_cspline (const dsp_vec  *x, const dsp_vec  *y, dsp_vec  *spline, int32_t ends,
                                double start, double end);
SIGPAK_API int32_t dspf_cspline(const dspf_vec *x, const dspf_vec *y, dspf_vec *spline, int32_t ends,
                                float  start, float  end);

enum {
  DSP_INTERP_VALUE = 0,
  DSP_INTERP_SLOPE = 1,
  DSP_INTERP_CURVATURE = 2,
  DSP_INTERP_INTEGRAL = 3, /* from x[0] to the target */
  DSP_INTERP_HOLD = 16,    /* outside the knots the end values */
  DSP_INTERP_WRAP = 32     /* outside the knots the same again, periodically; with neither the end polynomials go on */
};

/* out[i] = y, its first or second derivative, or its integral, at the abscissa at[i]; real, points and delta of at.
   x      as in dsp_cspline, with the points and the delta of y
   y      complex: a spline; real: straight lines. At least 1 point, otherwise -1. At a knot the value is exact, and
          derivatives are those behind it
   at     real, otherwise -1; any order; NaN gives NaN. dspc_line makes a regular grid
   flags  one of the first four, and at most one of the other two; otherwise -1. Slopes and integrals outside are
          those of what is held, repeated or continued
   out    may be at, y or x
   Regular knots are found without a search. Computed in double in both precisions. */
SIGPAK_API int32_t dsp_interp (const dsp_vec  *x, const dsp_vec  *y, const dsp_vec  *at, dsp_vec  *out, int32_t flags);
SIGPAK_API int32_t dspf_interp(const dspf_vec *x, const dspf_vec *y, const dspf_vec *at, dspf_vec *out, int32_t flags);

/* out = the tensor-product cubic spline through the table z over the grid (gx, gy): z[r * C + c] belongs to
   (gx[c], gy[r]), C = gx.points. On a grid, out[i * x.points + j] is the value at (x[j], y[i]); with flag 256 x and y are
   pairs of the same points, out[i] at (x[i], y[i]).
   x, y    real, any order; otherwise -1. NaN gives NaN
   out     real, may be an operand; its delta is that of x
   gx, gy  as x in dsp_cspline, not null, at least 1 point; z real with gx.points * gy.points points; otherwise -1. Along
           an axis of 1 point nothing changes
   flags   an ends of dsp_cspline for both axes, 0, 1 or 3, plus DSP_INTERP_HOLD or _WRAP, plus 256; others -1
   The spline is made anew in every call: gather the targets of a table in one. Computed in double in both precisions,
   in 4 doubles per knot. */
SIGPAK_API int32_t dspb_cspline_2d (const dsp_vec  *x, const dsp_vec  *y, dsp_vec  *out, const dsp_vec  *gx,
                                    const dsp_vec  *gy, const dsp_vec  *z, int32_t flags);
SIGPAK_API int32_t dspfb_cspline_2d(const dspf_vec *x, const dspf_vec *y, dspf_vec *out, const dspf_vec *gx,
                                    const dspf_vec *gy, const dspf_vec *z, int32_t flags);

/* ---- Fourier and cosine transforms ---------------------------------------------------------------------------- */

/* direction 0, forward:  X[k] = (1/N) sum over n of x[n] exp(-2 pi i n k / N)
   otherwise, inverse:    x[n] =       sum over k of X[k] exp(+2 pi i n k / N)
   v  N points, a power of two, real or complex; otherwise, and when empty, -1. Complex afterwards, but for a real
      record of one point; bin 0 first, the bins above N/2 are the negative frequencies
   delta becomes 1 / (N * delta), H when it was 0; NaN stays. The split-radix transform of Duhamel and Hollmann
   (1984); relative error in the Euclidean norm at most 1.5 u sqrt(log2 N), u the unit roundoff. The factor 1/N comes
   with the last sums: the bound holds for data as small as leave normal numbers, and sums of N points must not
   overflow before it. */
SIGPAK_API int32_t dspi_fft (dsp_vec  *v, int32_t direction);
SIGPAK_API int32_t dspfi_fft(dspf_vec *v, int32_t direction);

/* The bins 0 .. N/2 of dspi_fft(v, 0) of a real record; those above are the conjugates of the ones below.
   v  real, N points, a power of two; otherwise, and when empty, -1. Complex with N/2 + 1 points afterwards, but
      for one point, which stays as it is
   delta becomes 1 / (N * delta), H when it was 0 or NaN. Error bound as dspi_fft. */
SIGPAK_API int32_t dspi_rfft (dsp_vec  *v);
SIGPAK_API int32_t dspfi_rfft(dspf_vec *v);

/* The inverse of dspi_rfft: the real parts of the inverse transform of the whole spectrum.
   v  P points, the lower half with the bin in the middle; real with N = 2 (P - 1) points afterwards, one for
      P = 1. -1 unless N is a power of two, which leaves the whole spectrum of N points, and when empty
   delta as dspi_fft. Error bound as dspi_fft. */
SIGPAK_API int32_t dspi_irfft (dsp_vec  *v);
SIGPAK_API int32_t dspfi_irfft(dspf_vec *v);

/* dspi_fft for every length. Where N is not a power of two: if vectors are wide, by columns and rows (Cooley, Tukey
   1965) when its prime factors, 127 at most, suit them, and by the definition when it is a prime from 17 to 101, twice
   or three times one; otherwise by Bluestein's chirp transform (1970), whose sums reach 4 N^2 times the data. Tables
   of the last lengths are kept, up to 64 MiB beside the largest, at the baseline those of the last one; for every
   call at the same time.
   v  real or complex; complex afterwards when N is at least 2. A lent record may end in storage of the library's own
   delta becomes 1 / (N * delta), with N = 1 for an empty record; H when it was 0, or NaN and N no power of two
   above 1. Relative error in the Euclidean norm at most 4 u sqrt(log2 N). */
SIGPAK_API int32_t dspi_dft (dsp_vec  *v, int32_t direction);
SIGPAK_API int32_t dspfi_dft(dspf_vec *v, int32_t direction);

/* The bins 0 .. N/2, rounded down, of dspi_dft(v, 0) of a real record.
   v  real, otherwise -1; complex with N/2 + 1 points afterwards when N is at least 2
   delta becomes 1 / (N * delta), H when it was 0 or NaN. Error bound as dspi_dft. */
SIGPAK_API int32_t dspi_rdft (dsp_vec  *v);
SIGPAK_API int32_t dspfi_rdft(dspf_vec *v);

/* The inverse of dspi_rdft: the real parts of the inverse transform of the whole spectrum.
   v    P points; real afterwards, with 2 (P - 1) points, or 2 P - 1 when odd, but one for P = 1
   odd  nonzero when the length of the signal is
   delta as dspi_dft. Error bound as dspi_dft. */
SIGPAK_API int32_t dspi_irdft (dsp_vec  *v, int32_t odd);
SIGPAK_API int32_t dspfi_irdft(dspf_vec *v, int32_t odd);

/* Forward: C[k] = (1/N) sum over n of x[n] cos(pi (2n + 1) k / 2N), the cosine transform of type 2.
   Inverse: x[n] = C[0] + 2 sum over k = 1 .. N-1 of C[k] cos(pi (2n + 1) k / 2N).
   v      real, otherwise -1; N points, any number. An empty record stays as it is, delta too
   flags  bit 0 selects the inverse
   delta becomes 1 / (N * delta), H when it was 0 or NaN. By one real transform of the reordered samples (Makhoul
   1980). Error bound as dspi_dft. */
SIGPAK_API int32_t dspi_dct (dsp_vec  *v, int32_t flags);
SIGPAK_API int32_t dspfi_dct(dspf_vec *v, int32_t flags);

/* Exchanges every point with the one whose index has the bits in reverse order; undoes itself.
   v  real or complex, its points a power of two; otherwise, and when empty, -1 */
SIGPAK_API int32_t dspi_bitrev (dsp_vec  *v);
SIGPAK_API int32_t dspfi_bitrev(dspf_vec *v);

/* dspi_bitrev with every scalar times 1 / points. */
SIGPAK_API int32_t dspi_bitrev_scale (dsp_vec  *v);
SIGPAK_API int32_t dspfi_bitrev_scale(dspf_vec *v);

/* ---- Hilbert transform and analytic signal -------------------------------------------------------------------- */

/* The Hilbert transform: every positive frequency times -i, every negative one times i, and none at 0 and, for an
   even number of points, in the middle. cos becomes sin.
   v  real or complex, and stays so. A lent record may end in storage of the library's own
   delta becomes what two transforms by dspi_dft leave: itself up to rounding, 1 / (N * H) when it was 0. Relative
   error in the Euclidean norm at most 8 u sqrt(log2 N). */
SIGPAK_API int32_t dspi_hilbert (dsp_vec  *v);
SIGPAK_API int32_t dspfi_hilbert(dspf_vec *v);

/* The analytic signal: positive frequencies doubled, negative ones removed. Of a real record the real part is the
   record and the imaginary part its Hilbert transform, but for the frequency in the middle, which is kept.
   v  real or complex; complex afterwards unless empty. A lent record may end in storage of the library's own
   delta as dspi_hilbert. Error bound as dspi_hilbert. */
SIGPAK_API int32_t dspi_analytic (dsp_vec  *v);
SIGPAK_API int32_t dspfi_analytic(dspf_vec *v);

/* ---- Running average of records ------------------------------------------------------------------------------- */

/* Folds a record into the running result that the caller keeps. The first one, count <= 1, is copied whatever
   the mode.
   in        the new record; other lengths than that of avg are refused by the modes that combine the two
   avg       the running result, in the form and with the spacing that the operations on two records give it
   scratch   for intermediate results, or null. With avg as scratch the modes 4 and 5, and all with flag 32,
             lose the running result and give that of in alone
   flags     DSP_AVG_*: bits 0 to 3 the mode, one of
               0  avg = in                                   4  harmonic mean: of the reciprocals, inverted
               1  avg = w in + (1 - w) avg                   5  geometric mean: of the logarithms, raised
               2  avg = max(in, avg), peak hold              6  avg = in at counts 1, 1 + every, ...
               3  avg = min(in, avg), minimum hold           7 to 15  avg stays
             16: exponential averaging from maxcount records on; 32: squared magnitudes of in instead of in
   count     records so far, this one included
   every     interval of mode 6; 0 or less never replaces after the first record
   weight    w of modes 1, 4 and 5; a negative one asks for 1/count, the mean of all records
   maxcount  with flag 16 and when above 0, the count at which that weight stops falling
   In modes 4 and 5 the steps after one that failed still run where they can, and avg may be partly
   updated. */
SIGPAK_API int32_t dsph_avg (const dsp_vec  *in, dsp_vec  *avg, dsp_vec  *scratch, int32_t flags, int32_t count,
                             int32_t every, double weight, double maxcount);
SIGPAK_API int32_t dspfh_avg(const dspf_vec *in, dspf_vec *avg, dspf_vec *scratch, int32_t flags, int32_t count,
                             int32_t every, float  weight, float  maxcount);

/* ---- Running spectra ------------------------------------------------------------------------------------------- */

enum {
  DSP_SPECTRUM_EXPONENTIAL = 16, /* from maxcount segments on the weight of a new one stays 1 / maxcount, as dsph_avg */
  DSP_SPECTRUM_SQUARE = 32,      /* squared magnitudes of the spectra instead of the spectra, as dsph_avg */
  DSP_SPECTRUM_CENTRE = 64,      /* the mean under the window is taken out of every segment */
  DSP_SPECTRUM_DENSITY = 128,    /* per unit of frequency; otherwise per line */
  DSP_SPECTRUM_PAD2 = 256,       /* zeros to 2, 4, 8 times the segment */
  DSP_SPECTRUM_PAD4 = 512,
  DSP_SPECTRUM_PAD8 = 768
};

/* avg = the running average of the spectra of a stream's segments (Welch, IEEE Trans. Audio Electroacoust. 15, 1967).
   Segment j begins at sample j * hop and has the N points of the window w. P = N, or 2, 4, 8 times N with _PAD;
   g = 1 / mean(w), with _DENSITY sqrt(N * delta) / rms(w):
       S[k] = (g / N) sum over n < N of w[n] (x[n] - m) exp(-2 pi i n k / P)
       k = 0 .. P/2, rounded down, for real a, 0 .. P - 1 for complex a
       m = sum(w x) / sum(w) with _CENTRE, otherwise 0
     b null   avg averages S, complex, or with _SQUARE |S|^2, real
     b given  avg holds three spectra, one run of bins after the other, complex: |A|^2, |B|^2, conj(A) B; _SQUARE is
              implied
   Squares and products of real signals are doubled in the bins 1 .. (P - 1) / 2, rounded down: those stand for two
   frequencies.
       flags          samples in V                    a sine of amplitude A on a bin   white noise of variance s^2
       1 + 32         power spectrum, V^2             A^2 / 2                          2 s^2 ENBW / N
       1 + 32 + 128   power density, V^2/Hz           A^2 / 2 * N delta / ENBW         2 s^2 delta
       1              coherent average of triggered   A/2 exp(i phase)                 falls as 1 / sqrt(count)
                      blocks, V (window null)
   a, b      the block. With b both are real and of the same points; otherwise -1. Without points nothing changes
   avg       the running average; rewritten, bins points or 3 * bins. Its delta becomes 1 / (P * delta), H when delta
             is 0. With count above 0 it must have that form; otherwise -1
   history   the samples that wait for the next segment; a stays real or complex while some do, otherwise -1. An empty
             record starts a stream; its storage beyond points is working memory, and its contents are not specified.
             The same record as another argument: -1. Null: the block is all there is, what is left over at its end
             is dropped
   window    real, N >= 1 points, 1 / mean(w), with _DENSITY 1 / rms(w), finite; otherwise -1. Null: every block is one
             segment of its own length under a uniform window; hop and history are not used
   flags     bits 0 to 3 the mode: 0 the last segment, 1 mean, 2 maximum, 3 minimum, 4 harmonic, 5 geometric mean, as
             dsph_avg; with b 0 and 1 only; others -1. Plus any DSP_SPECTRUM_*
   hop       samples from segment to segment, 1 .. N; 0 stands for N / 2 rounded up; others -1
   count     segments averaged so far: 0 starts, each segment adds one, up to 2^31 - 1. Null: avg is that of this block
             alone
   maxcount  with _EXPONENTIAL and when above 0
   A density needs delta >= 0, otherwise -1; with 0 it is 0. dsph_fft: P a power of two, otherwise -1. dsph_dft: any P.
   Nothing but history changes until a segment is complete, and any split of a stream into blocks gives the same bits.
   Error of one spectrum: 4 u sqrt(log2(P) + 1) of its norm. A mean of n powers has a relative error of about
   u sqrt(n / 3); in single precision it stops moving near 2^24 segments. A NaN in a segment stays in avg. */
SIGPAK_API int32_t dsph_fft (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *avg, dsp_vec  *history,
                             const dsp_vec  *window, int32_t flags, int32_t hop, int32_t *count, double maxcount);
SIGPAK_API int32_t dspfh_fft(const dspf_vec *a, const dspf_vec *b, dspf_vec *avg, dspf_vec *history,
                             const dspf_vec *window, int32_t flags, int32_t hop, int32_t *count, float  maxcount);
SIGPAK_API int32_t dsph_dft (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *avg, dsp_vec  *history,
                             const dsp_vec  *window, int32_t flags, int32_t hop, int32_t *count, double maxcount);
SIGPAK_API int32_t dspfh_dft(const dspf_vec *a, const dspf_vec *b, dspf_vec *avg, dspf_vec *history,
                             const dspf_vec *window, int32_t flags, int32_t hop, int32_t *count, float  maxcount);

/* ---- Correlation ------------------------------------------------------------------------------------------------ */

enum { DSP_CORR_RAW = 0, DSP_CORR_BIASED = 1, DSP_CORR_UNBIASED = 2, DSP_CORR_COEFFICIENT = 3, DSP_CORR_CIRCULAR = 4 };

/* out[L + l] = scale * sum over n of a[n + l] conj(b[n]) for the lags l = -L .. L: 2 L + 1 points, lag 0 in the middle,
   complex when a or b is. A peak at a positive lag: a follows b by so many samples. N = samples so far, zeros around
   them:
     scale  _RAW 1;  _BIASED 1 / N;  _UNBIASED 1 / (N - |l|), 0 beyond;  _COEFFICIENT 1 / sqrt(sum |a|^2 sum |b|^2), 0
            for a signal of zeros
   a, b     real or complex; a may be b. dspb_corr and a null history: the shorter one counts as padded with zeros
   history  the stream: out covers all its samples. Then a and b have the same points, and the lags and the form of
            the sums, real or complex, stay; otherwise -1. An empty record starts a stream; its contents are not
            specified. Any split of a stream into blocks gives the same bits. The same record as another argument: -1
   out      may be a or b; null with a history: nothing is formed now; otherwise -1
   lags     L; negative, not with a history: all, the greater of the points less 1, with _CIRCULAR N / 2 rounded down
   flags    a scale, plus _CIRCULAR: indices modulo N, a and b of the same points, no history; every other bit -1
   delta becomes the mean of theirs. Take means out first (dspi_offset): a common offset buries the correlation.
   Up to 64 lags are summed directly, error 2 u ||a|| ||b|| for the usual signals, more by transforms, error below
   4 u log2(P) ||a|| ||b|| in every lag, P the transform's length, in a stream 4 L to 16 L or 1024; a NaN then spoils
   all lags. A state holds about 4 L + 2 S scalars, S = P - 2 L samples to a section, its sums, and as much again of
   working memory; of complex signals twice that. The room of a whole correlation stays until dsp_free_internal. */
SIGPAK_API int32_t dsph_corr (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out, dsp_vec  *history, int32_t lags,
                              int32_t flags);
SIGPAK_API int32_t dspfh_corr(const dspf_vec *a, const dspf_vec *b, dspf_vec *out, dspf_vec *history, int32_t lags,
                              int32_t flags);
SIGPAK_API int32_t dspb_corr (const dsp_vec  *a, const dsp_vec  *b, dsp_vec  *out, int32_t lags, int32_t flags);
SIGPAK_API int32_t dspfb_corr(const dspf_vec *a, const dspf_vec *b, dspf_vec *out, int32_t lags, int32_t flags);

/* ---- Windows: application and names ---------------------------------------------------------------------------- */

/* v = v * window, complex points as a whole; then, except for the uniform window, v is rotated left by half
   its points, rounded down, so that the window's peak becomes the first point. Windows are kept: the 16 made
   last are found again by points, window, flags and width, and where there are several threads, the first 16
   of up to 4096 points.
       Sums of cosines   w[c + m] = w[c - m] = sum over k of a[k] cos(2 pi k m / width), c = points / 2
                         rounded down
       Triangle          falls from its peak in c to 0 at the distance points / 2
       Riemann           sin(x) / x with x = 2 pi m / width, the main lobe; normalised over all points
   These forms are periodic: an even number of points has its end on the left only. The angles advance by
   addition and are exact every 1024 points. In DSP_WINDOW_FLAG_MEAN and _RMS the coefficients are stored
   ones.
   window  DSP_WINDOW_*; others give -1
   flags   DSP_WINDOW_FLAG_*: RMS and PEAK together, and WIDTH in dspi_window, give -1; so does SYMMETRIC,
           except for Kaiser, Gaussian, and the uniform window without WIDTH. ROTATE is for the uniform
           window, NO_ROTATE for all others; other bits are ignored
   width   in points, with DSP_WINDOW_FLAG_WIDTH; whole numbers are met within 4.4e-15. Points farther than
           half of it from c are 0, and all are when it is not above 0; the uniform window starts at the first
           point instead. NaN, and any width for triangle, Kaiser and Gaussian, give -1 */
SIGPAK_API int32_t dspi_window (dsp_vec  *v, int32_t window, int32_t flags);
SIGPAK_API int32_t dspfi_window(dspf_vec *v, int32_t window, int32_t flags);
SIGPAK_API int32_t dspi_window2 (dsp_vec  *v, int32_t window, int32_t flags, double width);
SIGPAK_API int32_t dspfi_window2(dspf_vec *v, int32_t window, int32_t flags, float  width);

/* buffer = the short name of a window, such as "Hann", cut to size - 1 characters.
   window  an unknown one gives an empty text and -1
   size    of the buffer; below 1, or without a buffer, -1 */
SIGPAK_API int32_t dsp_window_to_str (int32_t window, char *buffer, int32_t size);
SIGPAK_API int32_t dspf_window_to_str(int32_t window, char *buffer, int32_t size);

/* *window = the window of a name, which is any name of the enumeration, with or without DSP_WINDOW_, in
   capitals or not. An unknown name gives 0 and -1; a null pointer -1. */
SIGPAK_API int32_t dsp_window_from_str (const char *name, int32_t *window);
SIGPAK_API int32_t dspf_window_from_str(const char *name, int32_t *window);

/* ---- Windows: scale and noise bandwidth ------------------------------------------------------------------------ */

/* *scale = what a normalised window exceeds its unnormalised form u by: 1 / mean(u) with
   DSP_WINDOW_FLAG_MEAN, 1 / rms(u) with _RMS, and 1 with _PEAK or without points, for whatever window. From
   the stored coefficients where the window is a sum of cosines, from its points for a width, Kaiser, Gaussian
   and Riemann; H for a window of zeros, as every one of a width not above 0 is.
   window  an unknown one gives -1, but not with _PEAK or without points
   flags   DSP_WINDOW_FLAG_*: RMS and PEAK together give -1, and so does WIDTH in dsp_window_scale. SYMMETRIC
           shapes Kaiser and Gaussian windows, gives -1 for Riemann and together with WIDTH, and counts for
           nothing with sums of cosines and the triangle, which dspi_window refuses, and with _PEAK. The rest
           is ignored
   width   in points, with DSP_WINDOW_FLAG_WIDTH; NaN, and one for triangle, Kaiser or Gaussian, give -1 */
SIGPAK_API int32_t dsp_window_scale (double *scale, int32_t window, int32_t flags, int32_t points);
SIGPAK_API int32_t dspf_window_scale(float  *scale, int32_t window, int32_t flags, int32_t points);
SIGPAK_API int32_t dsp_window2_scale (double *scale, int32_t window, int32_t flags, int32_t points, double width);
SIGPAK_API int32_t dspf_window2_scale(float  *scale, int32_t window, int32_t flags, int32_t points, float  width);

/* *bins = mean(u^2) / mean(u)^2, the equivalent noise bandwidth of a window in units of 1 / (points * delta),
   as the square of the ratio of its two scales; 1 without points and for a window of zeros. Errors as
   above. */
SIGPAK_API int32_t dsp_window_enbw (double *bins, int32_t window, int32_t points);
SIGPAK_API int32_t dspf_window_enbw(float  *bins, int32_t window, int32_t points);
SIGPAK_API int32_t dsp_window2_enbw (double *bins, int32_t window, int32_t points, double width);
SIGPAK_API int32_t dspf_window2_enbw(float  *bins, int32_t window, int32_t points, float  width);

/* ---- Windows: Kaiser and Gaussian ------------------------------------------------------------------------------ */

/* v = v * window, rotated as by dspi_window. x is the distance from the point c = points / 2, rounded down.
   With DSP_WINDOW_FLAG_SYMMETRIC and an even number of points it is the distance from the middle between
   c - 1 and c.
       Kaiser     I0(beta sqrt(1 - (2 x / d)^2)), d = points, points - 1 with SYMMETRIC; 1 at d / 2
       Gaussian   exp(-x^2 / (2 (a points)^2))
   Divided by the mean or the root mean square of their points; with DSP_WINDOW_FLAG_PEAK Kaiser by I0(beta)
   and Gaussian by nothing, so that the middle is 1, which SYMMETRIC passes between two points when they are
   even.
   beta   its magnitude is limited to ln 1e200, to ln 1e100 with DSP_WINDOW_FLAG_RMS; a larger one, and NaN,
          count as the limit. The same in single precision, whose windows are computed in double
   a      the standard deviation as a part of the length; with 0 the innermost points alone are left. NaN
          gives -1
   flags  as in dspi_window; WIDTH, and RMS and PEAK together, give -1
   J. F. Kaiser, "Nonrecursive digital filter design using the I0-sinh window function", ISCAS 1974. */
SIGPAK_API int32_t dspi_window_kaiser (dsp_vec  *v, double beta, int32_t flags);
SIGPAK_API int32_t dspfi_window_kaiser(dspf_vec *v, float  beta, int32_t flags);
SIGPAK_API int32_t dspi_window_gauss (dsp_vec  *v, double a, int32_t flags);
SIGPAK_API int32_t dspfi_window_gauss(dspf_vec *v, float  a, int32_t flags);

/* ---- Windows: shapes of the caller, tapers ------------------------------------------------------------------------ */

/* v = v * window, rotated as by dspi_window; x and d as for dspi_window_kaiser.
       Sinc     |s|^power with the sign of s, s = sin(t) / t, t = edge * (2 x / d): t runs from 0 in the centre to edge
                at the ends
       Cosines  sum over k of terms[k] cos(2 pi k x / d)
   Normalised by the mean or the root mean square of their points; with DSP_WINDOW_FLAG_PEAK as the formula stands.
   edge   finite, of either sign, otherwise -1; pi is one main lobe (the Riemann window, to the last bit), 3 pi three
          lobes. An edge within 4.4e-15 of a multiple of pi, in single precision 2.4e-7, both relative, is that
          multiple, and the value there exactly 0
   power  0 or more, otherwise -1, NaN too; 1 is plain, 0 gives ones
   terms  real, finite, 1 point or more, otherwise -1; all signs as written here: published sums counted from the left
          end alternate. May be v
   flags  as in dspi_window; WIDTH, and two of the normalisations together, give -1
   Computed in double, rounded once. With _PEAK, u = 2^-53 or 2^-24: sinc within 4 u max(1, power), for power 0 and from
   1 on; cosines within 4 u max |window| + 2^-50 sum k |terms[k]|. */
SIGPAK_API int32_t dspi_window_sinc (dsp_vec  *v, double edge, double power, int32_t flags);
SIGPAK_API int32_t dspfi_window_sinc(dspf_vec *v, float  edge, float  power, int32_t flags);
SIGPAK_API int32_t dspi_window_cos (dsp_vec  *v, const dsp_vec  *terms, int32_t flags);
SIGPAK_API int32_t dspfi_window_cos(dspf_vec *v, const dspf_vec *terms, int32_t flags);

/* Tapers the taps of a filter: v = v * Kaiser window of the shape that a stop band of `attenuation` A needs, symmetric
   about the middle of v and 1 there, not rotated: for what dspc_fir gives.
       beta = 0 up to 21 dB, 0.5842 (A - 21)^0.4 + 0.07886 (A - 21) up to 50 dB, 0.1102 (A - 8.7) above
   A transition of width w, in cycles per sample, takes N = 1 + (A - 7.95) / (14.36 w) taps. Low passes of 70
   taps and more, scaled, hold A within 1 dB in pass and stop band from 30 to 150 dB, in single precision to 80; 20 taps
   for 30 dB are 4 dB short.
   v            real or complex; a single tap stays
   attenuation  dB, 0 or more, otherwise -1, NaN too; a beta beyond ln 1e200 counts as that
   flags        0; 1 scales the taps to the sum 1 afterwards, the gain of a low-pass at zero frequency, unless the sum
                is 0; others -1
   J. F. Kaiser, "Nonrecursive digital filter design using the I0-sinh window function", ISCAS 1974. */
SIGPAK_API int32_t dspi_window_fir (dsp_vec  *v, double attenuation, int32_t flags);
SIGPAK_API int32_t dspfi_window_fir(dspf_vec *v, float  attenuation, int32_t flags);

/* ---- Filters: design -------------------------------------------------------------------------------------------- */

/* v = the taps of a linear-phase filter; points is their number N, delta is neither read nor changed, and a
   complex v gets zero imaginary parts. Tap n lies at t = n - (N - 1) / 2 from the middle. Frequencies are in
   cycles per sample. x = 2 pi fc t, advanced by addition from the middle outwards, that of kind 5 from the
   first tap on; sinc(x) = sin(x) / x. No window is applied. Kinds 6, 8 and 10 cancel: relative to the largest
   tap the error of their inner taps grows to u / (2 (2 pi fc)^2), u the unit roundoff, which is 1.4e-12 at
   fc = 0.001, in single precision 8e-4.

   kind                    param1      param2      taps
    0  band pass           centre f    width w     those of 3 with fc = w / 2, times 2 cos(2 pi f t)
    1  band stop           centre f    width w     a unit pulse less 0; odd N only
    2  high pass           cut-off fc              a unit pulse less 3; odd N only
    3  low pass            cut-off fc              2 fc sinc(x)
    4  cosine-sum kernel   shape b                 sinh(r), r^2 = b^2 (1 - (2 t / (N + 1))^2), sum 1
    5  delayed low pass    cut-off fc  delay d     2 fc sinc(2 pi fc (t - d)), divided by their sum, which a
                                                   delay beyond the taps makes small
    6  differentiator      cut-off fc              2 fc 2 pi fc (cos(x) - sinc(x)) / x, antisymmetric
    7  Gaussian            cut-off fc              exp(-(x^2) / (2 ln 2)), 3 dB down at fc, sum 1
    8  Hilbert             cut-off fc              2 fc (cos(x) - 1) / x, antisymmetric
    9  Kaiser kernel       shape b                 sinh(r) / r, r^2 = b^2 - (b^2 + pi^2) (2 t / (N + 1))^2, sum 1
   10  ramp 2 |f|          cut-off fc              (2 fc)^2 (sinc(x) + (cos(x) - 1) / x^2)

   4 and 9 smooth with spectra like the windows that they are named for; b = 0 takes a shape that suits N,
   imaginary r counts as sin instead of sinh, and 4 has stored taps for N = 5, 7 and 9 (A. H. Nuttall, "Some
   windows with very good sidelobe behavior", IEEE Trans. ASSP 29, 1981). Taps whose sum is 0 stay as they
   are.
   kind  DSP_FIR_*; other kinds, an even N for 1 and 2, and parameters that lead to taps that are not finite
         give -1; v is then real and its taps are partly written */
SIGPAK_API int32_t dspc_fir (dsp_vec  *v, int32_t kind, double param1, double param2);
SIGPAK_API int32_t dspfc_fir(dspf_vec *v, int32_t kind, float  param1, float  param2);

/* v = one of two stored filters: code 100 has 12 taps, 101 has 20; neither is symmetric. Sets points; a
   complex v gets zero imaginary parts. Another code gives -1. */
SIGPAK_API int32_t dspc_fir2 (dsp_vec  *v, int32_t code);
SIGPAK_API int32_t dspfc_fir2(dspf_vec *v, int32_t code);

/* ---- Filters: filtering and decimation ------------------------------------------------------------------------- */

/* out[n] = sum over k of taps[k] * in[n - k]; no conjugation.
   in, taps  real or complex, any lengths; without taps the call is dsp_copy(out, in)
   out       points and delta of in, complex when in or the taps are; may be in
   history   the taps - 1 samples before the block, the oldest first, or null for zeros. A record of its own,
             not in, out or taps, nor over their data. It is brought to the form of in, zero-padded or cut to
             its first taps - 1 points, and leaves holding the last taps - 1 samples of the stream: the next
             call goes on where this one ended. An empty record starts a stream.
   Real blocks of at least taps - 1 samples go through the transform from 46 taps on, with AVX2 from 50 on,
   with AVX-512 from 58 on, with either from 14 taps more on where a block leaves the second cache (overlap-save;
   the spectrum of the taps is kept for the next call, and serves taps that differ from them by at most 1.11e-15
   |taps[0]|). Everything else is summed directly. Any split of a stream into blocks gives the same output, to
   the last bit where it is summed directly. Transformed outputs have an error of up to 4 u times the largest
   sample of their section times sum |taps|, u the unit roundoff, however small they are themselves. A sample
   of in that is not finite then reaches every output of the sections that hold it, earlier ones too: a section
   is a short block as a whole, otherwise 4 to 16 times the taps and at least 1024 samples. One in the history
   reaches only the outputs that see it, and so does any where the sum is direct.
   A failure may leave out and history partly updated. */
SIGPAK_API int32_t dspd_fir (const dsp_vec  *in, dsp_vec  *out, const dsp_vec  *taps, dsp_vec  *history);
SIGPAK_API int32_t dspfd_fir(const dspf_vec *in, dspf_vec *out, const dspf_vec *taps, dspf_vec *history);

/* dspd_fir with a linear-phase filter given by its leading half. Below 61 taps always summed directly.
   half           the taps h[0] ... h[N - 1]; the whole filter goes on with their mirror image
   odd            0 for 2 N taps; otherwise 2 N - 1 taps, h[N - 1] being the centre
   antisymmetric  nonzero negates the mirrored taps
   history        as in dspd_fir, for the whole filter */
SIGPAK_API int32_t dspd_sfir (const dsp_vec  *in, dsp_vec  *out, const dsp_vec  *half, int32_t odd,
                              int32_t antisymmetric, dsp_vec  *history);
SIGPAK_API int32_t dspfd_sfir(const dspf_vec *in, dspf_vec *out, const dspf_vec *half, int32_t odd,
                              int32_t antisymmetric, dspf_vec *history);

/* out[i] = in[s + i * factor]: every factor-th point, unfiltered; delta is factor times that of in.
   factor  below 1 counts as 1
   out     may be in
   state   null starts with s = 0. Otherwise a record of one real point: its value, rounded, is s, 0 when it
           is negative or NaN; it leaves
           holding the start in the next block, which may lie beyond it. An empty record starts at 0. */
SIGPAK_API int32_t dspd_deci (const dsp_vec  *in, dsp_vec  *out, int32_t factor, dsp_vec  *state);
SIGPAK_API int32_t dspfd_deci(const dspf_vec *in, dspf_vec *out, int32_t factor, dspf_vec *state);

/* ---- Filters: change of the sample rate -------------------------------------------------------------------------- */

/* v = a low-pass for dspd_rsmp by up / down: a sinc under a Kaiser window. In units of the lower of the two Nyquist
   frequencies it keeps 0 .. passband and stops from 1 on: nothing aliases. Deviation in the pass band, images and
   aliases all stay below 10^(-A / 20), A = attenuation, for 40 <= A <= 150 and every ratio but 1 / 1, a plain low-pass
   that may be 4.3 dB short; every one of the up phases sums to 1, so that a constant stays itself. Real; sets
   points = 2 c + 1 and delta = 1 / up.
       c = max(up, down) (A' - 7.95) / (14.36 (1 - passband)), rounded up; cut-off (1 + passband) / (4 max(up, down))
       A' = A + 3.5 + max(0, A - 100) / 20, for which beta is taken too, as in dspi_window_fir
   passband     0 < . < 1
   attenuation  dB, 20 .. 200
   up, down     as in dspd_rsmp; all otherwise -1, as for more than 2^31 - 1 taps
   Computed in double, rounded once: single precision has a noise floor near -140 dB. Taps per sample of the slower
   rate, which is the whole cost of dspd_rsmp:

       passband     100 dB      120 dB      150 dB
         0.80           67          82         104
         0.90          134         163         207
         0.93          191         232         295
         0.95          267         325         413 */
SIGPAK_API int32_t dspc_rsmp (dsp_vec  *v, int32_t up, int32_t down, double passband, double attenuation);
SIGPAK_API int32_t dspfc_rsmp(dspf_vec *v, int32_t up, int32_t down, float  passband, float  attenuation);

/* v = taps for dspd_rsmp by up: 2 span up + 1 of them at t = (j - span up) / up in samples of the input, delta 1 / up,
   real; sinc(t) = sin(pi t) / (pi t).
       _cos   raised cosine: sinc(t) cos(pi r t) / (1 - (2 r t)^2), every phase scaled to the sum 1. Exactly 1 at 0 and
              0 at every other whole t: the samples stay among the outputs, bit for bit. From 1 - r to 1 + r of the
              Nyquist frequency it falls as a cosine
       _pcos  its square root, one of a pair: (sin(pi t (1 - r)) + 4 r t cos(pi t (1 + r))) / (pi t (1 - (4 r t)^2)),
              scaled to the sum of squares up. Two in a row, the second with its taps / up, give the samples back
   up       as in dspd_rsmp
   span     1 or more: samples of the input to either side
   rolloff  r, 0 .. 1; all otherwise -1, as for more than 2^31 - 1 taps. At the zeros of the denominators the limits
            are taken
   Stop band of _cos, up 8, span 8 / 16 / 32: 46 / 61 / 73 dB for r = 0.25, 58 / 73 / 85 dB for 0.5; dspi_window_fir
   deepens it and keeps the zeros. Worst tap between symbols of two _pcos, r = 0.25, span 8 / 16: -65 / -77 dB. */
SIGPAK_API int32_t dspc_rsmp_cos (dsp_vec  *v, int32_t up, int32_t span, double rolloff);
SIGPAK_API int32_t dspfc_rsmp_cos(dspf_vec *v, int32_t up, int32_t span, float  rolloff);
SIGPAK_API int32_t dspc_rsmp_pcos (dsp_vec  *v, int32_t up, int32_t span, double rolloff);
SIGPAK_API int32_t dspfc_rsmp_pcos(dspf_vec *v, int32_t up, int32_t span, float  rolloff);

/* out[k] = sum over j of taps[j] * in[(k * down + c - j) / up], over the j that make the index a whole number;
   c = (N - 1) / 2 rounded down, N taps: up - 1 zeros between the samples, the filter, every down-th sample kept. What
   lies before the first sample and after the last counts as 0. Output k lies at the time k * down / up of the input;
   symmetric odd taps delay nothing. n samples give n * up / down outputs, rounded up.
   in        real or complex, one form for a stream. Null ends the stream: out gets the samples that still waited,
             state becomes empty; null without a state -1
   out       sized here, in the form of in; may be in. delta becomes down / up times that of in
   taps      real, N >= 1, the taps for the rate up; otherwise -1. A stream reads them at its first block and keeps them
   up, down  1 .. 2^24, the same for the whole stream, without a common factor for the least work; otherwise -1
   state     null: in is the whole signal. Otherwise out gets all that the samples so far suffice for: an output waits
             for c / up samples. An empty record starts a stream; one that holds another's state gives -1. A copy of it
             is the stream at that place
   A failed allocation leaves a stream where it was, unless it is that of the state. Any split of a stream into blocks
   gives the same bits: every output is summed from the oldest sample to the newest, N / up products, within
   (N / up + 1) u sum |taps| |in|, u = 2^-53 or 2^-24. */
SIGPAK_API int32_t dspd_rsmp (const dsp_vec  *in, dsp_vec  *out, const dsp_vec  *taps, int32_t up, int32_t down,
                              dsp_vec  *state);
SIGPAK_API int32_t dspfd_rsmp(const dspf_vec *in, dspf_vec *out, const dspf_vec *taps, int32_t up, int32_t down,
                              dspf_vec *state);

/* out[k] = (1/s) sum over n of in[n] h((t[k] - n) / s), t[k] = k * step, with `at` its k-th value / delta of in;
   s = the greater of 1 and step: the filter is stretched where the outputs are sparser than the inputs. h is the cubic
   spline through the taps (not-a-knot), which are taps.delta apart in samples of the input, centred, and 0 outside and
   at the last tap. n samples give n / step outputs, rounded up within 4.4e-15, or at.points.
   in, out  as in dspd_rsmp; delta becomes step times that of in, with `at` that of at
   taps     real, odd N >= 3, 1 / delta a whole number of phases within 4.4e-15, in single precision 1.2e-7, at most
            2^24; otherwise -1: those of dspc_rsmp(.., phases, 1, ..). 32 phases serve 120 dB, 64 150 dB. A stream
            reads them at its first block and keeps them
   at       times in the unit of delta, 0 the stream's first sample, or null. In any order in a whole signal. In a
            stream they do not fall, from call to call too, otherwise -1: bring the times up to the end of the block,
            and again those not yet served; out.points tells how many were. Times whose samples have left the stream,
            NaN and infinity give -1. May be out, in dspd_rsmp2
   step     > 0 and finite, otherwise -1. May change from call to call: the place of the next output goes on from the
            last, and samples that a filter stretched further would still see, but that have left, count as 0. With
            `at` it only sets s: 1 for times no sparser than the samples
   state    as in dspd_rsmp
   at and step are double in both precisions: 24 bits cannot place a sample. Regular times are whole multiples of 2^-64
   samples: k * step is exact for steps from 2^-11 on, without drift. With s = 1 a weight is the spline within 8 u of
   the largest tap; stretched filters are cubic between `phases` points per sample, as close as the spline is to its
   own function. Worst error of a tone at 0.9 of the Nyquist frequency, taps of dspc_rsmp with passband 0.9, in dB:

       attenuation   16 phases     32        64       128
          100           -99.5    -101.6    -101.6    -101.5
          120          -109.4    -120.2    -121.5    -121.5
          150          -111.8    -134.6    -148.2    -150.3

   Any split of a stream into blocks gives the same bits. Work: 4 N / phases products per output. */
SIGPAK_API int32_t dspd_rsmp2 (const dsp_vec  *in, dsp_vec  *out, const dsp_vec  *taps, const dsp_vec *at, double step,
                               dsp_vec  *state);
SIGPAK_API int32_t dspfd_rsmp2(const dspf_vec *in, dspf_vec *out, const dspf_vec *taps, const dsp_vec *at, double step,
                               dspf_vec *state);

/* ---- Filters: hwfilt --------------------------------------------------------------------------------------------- */

/* A fixed recursive low-pass: four equal sections (1 + 1/z) (1 + 1/z + 1/z^2) / (4 + 2/z^2), one after the
   other. The gain is 1 at zero frequency and 0 at the Nyquist frequency. The real and the imaginary parts of
   complex samples are filtered as two signals. In single precision what passes from section to section is
   rounded.
   out       points, complex and delta of in; may be in
   reserved  0; otherwise -1
   state     12 points of delays in the form of in, kept from block to block; brought to that form on entry,
             the first points kept. An empty record starts at rest. Null uses one state that all such calls of
             a precision share, and that dsp_free_internal resets: they continue one stream. A call that
             finds another at work on it starts at rest, and leaves nothing behind. */
SIGPAK_API int32_t dspd_hwfilt (const dsp_vec  *in, dsp_vec  *out, int32_t reserved, dsp_vec  *state);
SIGPAK_API int32_t dspfd_hwfilt(const dspf_vec *in, dspf_vec *out, int32_t reserved, dspf_vec *state);

/* dspd_hwfilt(v, v, reserved, null): in place, on the shared state. */
SIGPAK_API int32_t dspi_hwfilt (dsp_vec  *v, int32_t reserved);
SIGPAK_API int32_t dspfi_hwfilt(dspf_vec *v, int32_t reserved);

/* ---- Vector files ------------------------------------------------------------------------------------------------ */

/* A stream holds any number of vectors, one after the other, in either of two forms; the reader takes both,
   and either precision into either record.

   Binary  magic 0xEB0330BE, type word 0x408 (doubles) or 0x404 (floats), points, complex: four bytes each, in
           the writer's byte order; then delta and the scalars, 8 or 4 bytes each. Exact. The reader takes the
           other byte order too, and the older headers without a type word: 0xEB0110BE (doubles), 0xEB0220BE
           (floats).
   ASCII   five comment lines, then one line per point: the value, or re and im.
               #DSP ASCII data from sigpak package
               #DSP points = 2
               #DSP complex = 0
               #DSP type = 8
               #DSP delta = 0.5
               1
               2.5
           The reader takes numbers between any white space, "0x1A" (32 bits in two's complement: 0xffffffff
           is -1), "inf" and "nan"; whatever begins with # is a comment to the end of its line. Of the header
           it needs nothing: without points the vector runs to the end of the stream, without complex it is
           real, without delta that is 1. The decimal point is a point in every locale.

   Both forms may follow each other in one stream, but behind an ASCII vector that declares its points the end
   of its last line is still unread: the next read skips it before ASCII vectors, gives -1, once, before a
   binary one, and one more vector of no points at the end of the stream.

   Open binary vectors with "rb" and "wb". */

/* fopen(name, mode); the name "-" is standard input when mode begins with r, standard output when it begins
   with w, and otherwise null. */
SIGPAK_API FILE *dspf_fopen (const char *name, const char *mode);
SIGPAK_API FILE *dspff_fopen(const char *name, const char *mode);

/* fclose(f); standard input and output are left open, and 0 comes back. */
SIGPAK_API int32_t dspf_fclose (FILE *f);
SIGPAK_API int32_t dspff_fclose(FILE *f);

/* v = the next vector of the stream, with delta, points and complex. 1 when there was one; 0 at the end of
   the stream: v is then empty, its delta and complex as before; -1 when it is malformed or cut short, or when
   storage is wanting: v then holds the points that arrived, or none. Storage grows with what has arrived, so
   that a header alone cannot ask for it. A binary vector ends after its scalars, an ASCII one after the
   points that it declares; white space and comments alone are a vector of no points. */
SIGPAK_API int32_t dspf_fread (dsp_vec  *v, FILE *f);
SIGPAK_API int32_t dspff_fread(dspf_vec *v, FILE *f);

/* Writes v in binary form; -1 on a short write. */
SIGPAK_API int32_t dspf_fwrite (const dsp_vec  *v, FILE *f);
SIGPAK_API int32_t dspff_fwrite(const dspf_vec *v, FILE *f);

/* Writes v in ASCII form, with 16 significant digits, in single precision 7. Always 0: ask ferror. */
SIGPAK_API int32_t dspf_fwrite_ascii (const dsp_vec  *v, FILE *f);
SIGPAK_API int32_t dspff_fwrite_ascii(const dspf_vec *v, FILE *f);

/* Writes v as flags tell. -1 on a short binary write, or for an unknown form.
   flags  DSP_WRITE_*: 0 binary, 1 ASCII, 2 summary; plus 0x100 without the header, 0x200 the header alone
   The summary is a line for people, "[40/0.5] 1 2 3 ...": points and delta, then at most 32 points with 4
   significant digits, whole from 9999 to 999999999; a complex point is re,im. */
SIGPAK_API int32_t dspf_fwrite2 (const dsp_vec  *v, FILE *f, int32_t flags);
SIGPAK_API int32_t dspff_fwrite2(const dspf_vec *v, FILE *f, int32_t flags);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* SIGPAK_H */
