// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

// Before Core's headers: it has functions named check, which is a macro there.
#include <rapidcheck/gtest.h>

#include "MathGenerators.h"

namespace
{
/// One part in 10^13 of a turn.
constexpr double TinyAngle = 1.e-13;

double RoundTripError(const FQuat& Q)
{
	return Q.Rotator().Quaternion().AngularDistance(Q);
}
}

TEST(Rotator, EachAngleTurnsInItsPlane)
{
	EXPECT_TRUE(FRotator(0, 90, 0).RotateVector({1, 0, 0}).Equals({0, 1, 0}, 1.e-15));
	EXPECT_TRUE(FRotator(90, 0, 0).RotateVector({1, 0, 0}).Equals({0, 0, 1}, 1.e-15));
	EXPECT_TRUE(FRotator(0, 0, 90).RotateVector({0, 0, 1}).Equals({0, 1, 0}, 1.e-15));
}

TEST(Rotator, RollsThenPitchesThenYaws)
{
	const FVector P(2, 3, 5);
	const FVector Expected =
		FRotator(0, 50, 0).RotateVector(FRotator(-35, 0, 0).RotateVector(FRotator(0, 0, 110).RotateVector(P)));
	EXPECT_TRUE(FRotator(-35, 50, 110).RotateVector(P).Equals(Expected, 1.e-14));
}

TEST(Rotator, HalfTurnsHaveExactZeros)
{
	EXPECT_EQ(FRotator(0, 180, 0).Quaternion().GetVector(), FVector(0, 0, 1));
	EXPECT_EQ(FRotator(0, 180, 0).Quaternion().W, 0.0);
	EXPECT_EQ(FRotator(0, 360, 0).Quaternion(), FQuat(0, 0, 0, -1));
}

TEST(Rotator, IdentityGivesExactlyZeroAngles)
{
	EXPECT_EQ(FQuat::Identity.Rotator(), FRotator::ZeroRotator);
	EXPECT_EQ((-FQuat::Identity).Rotator(), FRotator::ZeroRotator);
}

TEST(Rotator, SingleAxisTurnsLeaveTheOtherAnglesExactlyZero)
{
	for (const double Angle : {-170.0, -90.0, -12.5, 30.0, 90.0, 180.0})
	{
		const FRotator Yaw = FRotator(0, Angle, 0).Quaternion().Rotator();
		EXPECT_EQ(Yaw.Pitch, 0.0);
		EXPECT_EQ(Yaw.Roll, 0.0);
		EXPECT_NEAR(Yaw.Yaw, Angle, 1.e-13);
	}
}

TEST(Rotator, NormalizedAnglesLieAboveMinusAndUpTo180)
{
	EXPECT_EQ(FRotator::NormalizeAxis(-180.0), 180.0);
	EXPECT_EQ(FRotator::NormalizeAxis(180.0), 180.0);
	EXPECT_EQ(FRotator::NormalizeAxis(540.0), 180.0);
	EXPECT_EQ(FRotator::NormalizeAxis(-190.0), 170.0);
	EXPECT_EQ(FRotator::NormalizeAxis(725.0), 5.0);
	EXPECT_EQ(FRotator::NormalizeAxis(-1.e-20), -1.e-20);
	EXPECT_TRUE(FRotator(0, 179.99999, 0).Equals(FRotator(360, -179.99999, 0)));
	EXPECT_FALSE(FRotator(0, 179.9, 0).Equals(FRotator(0, -179.9, 0)));
}

TEST(Rotator, AtThePolesRollIsZeroAndNothingIsLost)
{
	for (const double Pitch : {90.0, -90.0})
	{
		for (const double Yaw : {-150.0, 0.0, 35.0, 90.0})
		{
			for (const double Roll : {-100.0, 0.0, 45.0})
			{
				const FQuat Q = FRotator(Pitch, Yaw, Roll).Quaternion();
				EXPECT_EQ(Q.Rotator().Roll, 0.0);
				EXPECT_NEAR(Q.Rotator().Pitch, Pitch, 1.e-12);
				EXPECT_LT(RoundTripError(Q), TinyAngle);
			}
		}
	}
}

RC_GTEST_PROP(Rotator, RoundTripsEveryRotation, ())
{
	const FQuat Q = *MathGenerators::Rotation();
	RC_ASSERT(RoundTripError(Q) < TinyAngle);
}

RC_GTEST_PROP(Rotator, RoundTripsCloseToThePolesToo, ())
{
	const double Distance = *rc::gen::oneOf(MathGenerators::Magnitude(1.e-16, 1.0), rc::gen::just(0.0));
	const double Yaw = *MathGenerators::Magnitude(1.e-3, 180.0);
	const double Roll = *MathGenerators::Magnitude(1.e-3, 180.0);
	const double Pole = *rc::gen::element(-90.0, 90.0);
	RC_ASSERT(RoundTripError(FRotator(Pole + Distance, Yaw, Roll).Quaternion()) < TinyAngle);
}

RC_GTEST_PROP(Rotator, AnglesRoundTripAwayFromThePoles, ())
{
	const FRotator Angles(*MathGenerators::Magnitude(1.e-6, 80.0), *MathGenerators::Magnitude(1.e-6, 180.0),
		*MathGenerators::Magnitude(1.e-6, 180.0));
	RC_ASSERT(Angles.Quaternion().Rotator().Equals(Angles, 1.e-11));
}

TEST(Quat, TurnsAboutItsAxis)
{
	const FQuat Q(FVector::UpVector, PI / 2.0);
	EXPECT_TRUE(Q.RotateVector({1, 0, 0}).Equals({0, 1, 0}, 1.e-15));
	EXPECT_TRUE(Q.UnrotateVector({0, 1, 0}).Equals({1, 0, 0}, 1.e-15));
}

TEST(Quat, ProductTurnsByTheRightOneFirst)
{
	const FQuat AboutZ(FVector::UpVector, PI / 2.0);
	const FQuat AboutX(FVector::ForwardVector, PI / 2.0);
	EXPECT_TRUE((AboutX * AboutZ).RotateVector({1, 0, 0}).Equals({0, 0, 1}, 1.e-15));
}

TEST(Quat, NormalizedWithinOneHundredth)
{
	EXPECT_TRUE(FQuat(0, 0, 0, std::sqrt(1.0099)).IsNormalized());
	EXPECT_FALSE(FQuat(0, 0, 0, std::sqrt(1.0101)).IsNormalized());
	EXPECT_FALSE(FQuat(0, 0, 0, std::nan("")).IsNormalized());
	EXPECT_EQ(FQuat(0, 0, 0, 0).GetNormalized(), FQuat::Identity);
	EXPECT_EQ(FQuat(0, 0, -3, 4).GetNormalized(), FQuat(0, 0, -0.6, 0.8));
}

RC_GTEST_PROP(Quat, IsFoundAgainFromItsAxes, ())
{
	const FQuat Q = *MathGenerators::Rotation();
	RC_ASSERT(FQuat::FromAxes(Q.GetAxisX(), Q.GetAxisY(), Q.GetAxisZ()).AngularDistance(Q) < 1.e-14);
}
